<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Confirm uninstallation</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Are you sure you want to remove Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Remove all the effect resource files</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright Uninstaller</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Failed to check update!</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>You are already the latest version!</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Failed to download the update.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Install failed.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright Uninstaller</translation>
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
        <translation>Hello there,

I am Arlen, an engineer at Norvane Technology. We are committed to creating easy-to-use software. We will work hard to make it as suitable as possible for you.

Thank you for your feedback.
Hope to meet you again.

Thank you!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Can you tell me why you want to uninstall?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>It crashed or froze on my computer.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>The price is not appropriate.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>It lacks the features I need.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>It is too difficult to use.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>I have found a better tool.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Describe the problem</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Please describe the problem you encountered.</translation>
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
        <translation>All</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Creativity</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Productivity</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utility</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>More Apps You Might Like</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
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
        <translation>Norvane Clipwright Uninstaller</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Loading</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
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
        <translation>Thanks for your feedback! Uninstalling...</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Time remaining: About 15 seconds</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Uninstall progress</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Email address</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Please enter a valid email address.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>More Apps You Might Like</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>More Products</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Uninstall Failed</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Your uninstallation encountered errors. Please try uninstalling again.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Time remaining: About %1 seconds</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Successfully uninstalled</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Subscribe to get the latest updates</translation>
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
        <translation>Close</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Upgrading, please wait...</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Upgrade progress</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Upgrade completed</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>The new version is more stable and faster!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Launch</translation>
    </message>
</context>
</TS>
