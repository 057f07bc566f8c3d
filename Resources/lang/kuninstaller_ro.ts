<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ro" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Confirmarea dezinstalării</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Sigur doriți să eliminați Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Eliminați și toate fișierele de efecte</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Eliminare</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anulare</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Dezinstalare Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Căutarea actualizărilor nu a reușit.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Aveți deja cea mai recentă versiune.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Actualizarea nu a putut fi descărcată.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Instalarea nu a reușit.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Dezinstalare Norvane Clipwright</translation>
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
        <translation>Bună ziua,

Sunt Arlen, inginer la Norvane Technology. Ne dorim să creăm programe ușor de folosit și ne străduim ca ele să vi se potrivească din ce în ce mai bine.

Vă mulțumim pentru feedback.
Sperăm să ne reîntâlnim.

Vă mulțumim!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>De ce doriți să dezinstalați programul?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Programul s-a blocat sau s-a închis singur.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Prețul nu mi se pare potrivit.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Îi lipsesc funcțiile de care am nevoie.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Este prea greu de folosit.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Am găsit un program mai bun.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Alt motiv</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Descrieți problema</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuare</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anulare</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Vă rugăm să descrieți problema întâmpinată.</translation>
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
        <translation>Toate</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Creativitate</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Productivitate</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilitare</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Alte aplicații</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Închidere</translation>
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
        <translation>Dezinstalare Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Se încarcă</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Închidere</translation>
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
        <translation>Mulțumim pentru feedback!
Se dezinstalează…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Timp rămas: aproximativ 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Progresul dezinstalării</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Adresă de e-mail</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Introduceți o adresă de e-mail validă.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Gata</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Alte aplicații</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Închidere</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Alte produse</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Dezinstalarea nu a reușit</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Au apărut erori la dezinstalare. Vă rugăm să reîncercați.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Timp rămas: aproximativ %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Dezinstalarea a reușit</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Abonați-vă pentru a primi noutățile</translation>
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
        <translation>Închidere</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Se face upgrade, vă rugăm să așteptați…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Progresul upgrade-ului</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anulare</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Upgrade finalizat</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Versiunea nouă este mai stabilă și mai rapidă!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Lansare</translation>
    </message>
</context>
</TS>
