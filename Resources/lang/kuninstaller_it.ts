<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Conferma disinstallazione</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Vuoi davvero rimuovere Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Rimuovi anche tutti i file degli effetti</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Rimuovi</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Disinstallazione di Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Impossibile verificare gli aggiornamenti.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Hai già la versione più recente.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Impossibile scaricare l’aggiornamento.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Installazione non riuscita.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Disinstallazione di Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>OptionPage</name>
    <message>
        <source>OptionPage</source>
        <translation>OptionPage</translation>
    </message>
    <message>
        <source>Hello there,

I am Arlen, an engineer at Norvane Technology. We are committed to creating easy-to-use software. We will work hard to make it as suitable as possible for you.

Thank you for your feedback.
Hope to meet you again.

Thank you!</source>
        <translation>Ciao,

sono Arlen, ingegnere di Norvane Technology. Ci impegniamo a creare software facile da usare e facciamo del nostro meglio perché sia il più possibile adatto a te.

Grazie per il tuo feedback.
Speriamo di ritrovarti presto.

Grazie di cuore!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Perché vuoi disinstallare Clipwright?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Si chiude da solo o si blocca.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Il prezzo non è adeguato.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Mancano le funzioni che mi servono.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>È troppo difficile da usare.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Ho trovato uno strumento migliore.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Altro motivo</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Descrivi il problema</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continua</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Descrivi il problema che hai riscontrato.</translation>
    </message>
</context>
<context>
    <name>ProductItem</name>
    <message>
        <source>ProductItem</source>
        <translation>ProductItem</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
</context>
<context>
    <name>ProductPage</name>
    <message>
        <source>ProductPage</source>
        <translation>ProductPage</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Tutto</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Creatività</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produttività</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilità</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Altre app per te</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <extracomment>"LTR" for languages that are written from left to right, "RTL" for the others. The framework asks for it when a catalogue is installed and mirrors the whole interface accordingly.</extracomment>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>SplashWindow</name>
    <message>
        <source>SplashWindow</source>
        <translation>Disinstallazione di Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Caricamento</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
</context>
<context>
    <name>UninstallPage</name>
    <message>
        <source>UninstallPage</source>
        <translation>UninstallPage</translation>
    </message>
    <message>
        <source>Thanks for your feedback! Uninstalling...</source>
        <translation>Grazie per il tuo feedback!
Disinstallazione in corso…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Tempo rimanente: circa 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Avanzamento della disinstallazione</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Indirizzo e-mail</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Inserisci un indirizzo e-mail valido.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fine</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Altre app per te</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Altri prodotti</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Disinstallazione non riuscita</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Si sono verificati errori. Prova a disinstallare di nuovo.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Tempo rimanente: circa %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Disinstallazione completata</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Iscriviti per ricevere le ultime novità</translation>
    </message>
</context>
<context>
    <name>UpgradePage</name>
    <message>
        <source>UpgradePage</source>
        <translation>UpgradePage</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Aggiornamento in corso, attendi…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Avanzamento dell’aggiornamento</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Aggiornamento completato</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>La nuova versione è più stabile e veloce!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Avvia</translation>
    </message>
</context>
</TS>
