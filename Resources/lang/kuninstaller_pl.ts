<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Potwierdzenie odinstalowania</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Czy na pewno chcesz usunąć program Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Usuń też wszystkie pliki efektów</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Usuń</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Dezinstalator programu Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Nie udało się sprawdzić dostępności aktualizacji.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Masz już najnowszą wersję.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Nie udało się pobrać aktualizacji.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Instalacja nie powiodła się.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Dezinstalator programu Norvane Clipwright</translation>
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
        <translation>Dzień dobry,

mam na imię Arlen i jestem inżynierem w Norvane Technology. Chcemy tworzyć oprogramowanie łatwe w obsłudze i dokładamy starań, aby jak najlepiej odpowiadało Twoim potrzebom.

Dziękujemy za Twoją opinię.
Mamy nadzieję, że jeszcze się spotkamy.

Serdecznie dziękujemy!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Dlaczego chcesz odinstalować program?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Program zawiesił się lub nagle zamknął.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Cena mi nie odpowiada.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Brakuje mi potrzebnych funkcji.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Program jest zbyt trudny w obsłudze.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Mam już lepszy program.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Inny powód</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Opisz problem</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Kontynuuj</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Opisz, proszę, napotkany problem.</translation>
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
        <translation>Wszystkie</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Kreatywność</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktywność</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Narzędzia</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Polecane aplikacje</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Zamknij</translation>
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
        <translation>Dezinstalator programu Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Wczytywanie</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Zamknij</translation>
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
        <translation>Dziękujemy za opinię!
Trwa odinstalowywanie…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Pozostały czas: około 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Postęp odinstalowywania</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Adres e-mail</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Podaj prawidłowy adres e-mail.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Gotowe</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Polecane aplikacje</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Zamknij</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Więcej produktów</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Nie udało się odinstalować programu</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Podczas odinstalowywania wystąpiły błędy. Spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Pozostały czas: około %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Program został odinstalowany</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Zapisz się, aby otrzymywać nowości</translation>
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
        <translation>Zamknij</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Trwa uaktualnianie, proszę czekać…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Postęp uaktualniania</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Uaktualnianie zakończone</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Nowa wersja jest stabilniejsza i szybsza!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Uruchom</translation>
    </message>
</context>
</TS>
