<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sv" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Bekräfta avinstallation</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Är du säker på att du vill ta bort Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Ta även bort alla effektfiler</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Ta bort</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Avbryt</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Avinstallera Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Det gick inte att söka efter uppdateringar.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Du har redan den senaste versionen.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Det gick inte att hämta uppdateringen.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Installationen misslyckades.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Avinstallera Norvane Clipwright</translation>
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
        <translation>Hej!

Jag heter Arlen och är ingenjör på Norvane Technology. Vi vill göra program som är lätta att använda, och vi jobbar hårt för att de ska passa dig så bra som möjligt.

Tack för dina synpunkter.
Hoppas att vi ses igen.

Stort tack!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Varför vill du avinstallera programmet?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Programmet kraschade eller hängde sig.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Jag tycker inte att priset är rimligt.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Det saknar funktioner som jag behöver.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Det är för svårt att använda.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Jag har hittat ett bättre program.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Annan anledning</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Beskriv problemet</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortsätt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Avbryt</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Beskriv gärna problemet du råkade ut för.</translation>
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
        <translation>Alla</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Kreativitet</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktivitet</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Verktyg</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Fler appar för dig</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Stäng</translation>
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
        <translation>Avinstallera Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Läser in</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Stäng</translation>
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
        <translation>Tack för dina synpunkter!
Avinstallerar …</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Återstående tid: cirka 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Avinstallationsförlopp</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>E-postadress</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Ange en giltig e-postadress.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Klar</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Fler appar för dig</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Stäng</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Fler produkter</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Avinstallationen misslyckades</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Det uppstod fel vid avinstallationen. Försök igen.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Återstående tid: cirka %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Avinstallationen är klar</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Prenumerera på våra senaste nyheter</translation>
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
        <translation>Stäng</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Uppgraderar, vänta …</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Uppgraderingsförlopp</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Avbryt</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Uppgraderingen är klar</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Den nya versionen är stabilare och snabbare!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Starta</translation>
    </message>
</context>
</TS>
