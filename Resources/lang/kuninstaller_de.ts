<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Deinstallation bestätigen</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Norvane Clipwright
wirklich entfernen?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Auch alle Effektdateien entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright deinstallieren</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Die Suche nach Updates ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Sie verwenden bereits die neueste Version.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Das Update konnte nicht heruntergeladen werden.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Die Installation ist fehlgeschlagen.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright deinstallieren</translation>
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
        <translation>Hallo,

ich bin Arlen, Entwickler bei Norvane Technology. Unser Ziel ist Software, die sich leicht bedienen lässt, und wir geben uns alle Mühe, damit sie möglichst gut zu Ihnen passt.

Danke für Ihr Feedback.
Wir würden uns freuen, Sie wiederzusehen.

Vielen Dank!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Warum möchten Sie Clipwright deinstallieren?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Das Programm stürzt ab oder friert ein.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Der Preis ist nicht angemessen.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Mir fehlen Funktionen, die ich brauche.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Die Bedienung ist zu schwierig.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Ich habe ein besseres Programm gefunden.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Anderer Grund</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Problem beschreiben</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Bitte beschreiben Sie das Problem.</translation>
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
        <translation>Alle</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Kreativität</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktivität</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Weitere Apps für Sie</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
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
        <translation>Norvane Clipwright deinstallieren</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Wird geladen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
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
        <translation>Danke für Ihr Feedback!
Deinstallation läuft …</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Verbleibende Zeit: etwa 15 Sek.</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Fortschritt der Deinstallation</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Bitte geben Sie eine gültige E-Mail-Adresse ein.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Weitere Apps für Sie</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Weitere Produkte</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Deinstallation fehlgeschlagen</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Es sind Fehler aufgetreten. Bitte versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Verbleibende Zeit: etwa %1 Sek.</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Erfolgreich deinstalliert</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Abonnieren Sie unseren Newsletter</translation>
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
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Upgrade läuft, bitte warten …</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Fortschritt des Upgrades</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Upgrade abgeschlossen</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Die neue Version ist stabiler und schneller!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Starten</translation>
    </message>
</context>
</TS>
