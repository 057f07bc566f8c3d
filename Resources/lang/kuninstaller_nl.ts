<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Verwijderen bevestigen</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Wil je Norvane Clipwright
echt verwijderen?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Ook alle effectbestanden verwijderen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright verwijderen</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Het zoeken naar updates is mislukt.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Je hebt al de nieuwste versie.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>De update kon niet worden gedownload.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>De installatie is mislukt.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright verwijderen</translation>
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

Ik ben Arlen, ontwikkelaar bij Norvane Technology. We willen software maken die prettig werkt, en we doen ons best om die zo goed mogelijk bij jou te laten passen.

Bedankt voor je feedback.
We zien je graag nog eens terug.

Hartelijk dank!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Waarom wil je het programma verwijderen?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Het programma liep vast of crashte.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Ik vind de prijs niet redelijk.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Ik mis functies die ik nodig heb.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Het programma is te moeilijk in gebruik.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Ik heb een beter programma gevonden.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere reden</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Beschrijf het probleem</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Doorgaan</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Beschrijf het probleem dat je tegenkwam.</translation>
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
        <translation>Alles</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Creativiteit</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Productiviteit</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Hulpmiddelen</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Meer apps voor jou</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
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
        <translation>Norvane Clipwright verwijderen</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Bezig met laden</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
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
        <translation>Bedankt voor je feedback!
Bezig met verwijderen…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Resterende tijd: ongeveer 15 sec.</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Voortgang van het verwijderen</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>E-mailadres</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Voer een geldig e-mailadres in.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Gereed</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Meer apps voor jou</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Meer producten</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Verwijderen mislukt</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Er ging iets mis bij het verwijderen. Probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Resterende tijd: ongeveer %1 sec.</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Het programma is verwijderd</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Meld je aan voor het laatste nieuws</translation>
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
        <translation>Sluiten</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Bezig met upgraden, even geduld…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Voortgang van de upgrade</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Upgrade voltooid</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>De nieuwe versie is stabieler en sneller!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Starten</translation>
    </message>
</context>
</TS>
