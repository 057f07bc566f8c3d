<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Подтверждение удаления</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Вы действительно хотите удалить Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Также удалить все файлы эффектов</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Удаление Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Не удалось проверить наличие обновлений.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>У вас уже установлена последняя версия.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Не удалось скачать обновление.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Не удалось выполнить установку.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Удаление Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
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
        <translation>Здравствуйте!

Меня зовут Арлен, я инженер компании Norvane Technology. Мы стремимся создавать удобные программы и будем стараться, чтобы они как можно лучше подходили именно вам.

Спасибо за ваш отзыв.
Надеемся на новую встречу.

Благодарим вас!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Почему вы решили удалить программу?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>У меня программа вылетала или зависала</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Меня не устраивает цена</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Мне не хватает нужных функций</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Программой слишком сложно пользоваться</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>У меня есть программа получше</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Другая причина</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Описание проблемы</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Продолжить</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Опишите возникшую проблему.</translation>
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
        <translation>Все</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Творчество</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Для работы</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Утилиты</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Рекомендуем</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
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
        <translation>Удаление Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Загрузка</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
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
        <translation>Спасибо за отзыв!
Удаляем программу…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Осталось примерно 15 сек.</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Ход удаления</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Адрес электронной почты</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Введите действительный адрес электронной почты.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Рекомендуем</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Другие продукты</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Не удалось удалить программу</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>При удалении возникли ошибки. Попробуйте ещё раз.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Осталось примерно %1 сек.</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Программа удалена</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Подпишитесь на наши новости</translation>
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
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Обновляем программу, подождите…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Ход обновления</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Обновление завершено</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Новая версия стабильнее и быстрее!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Запустить</translation>
    </message>
</context>
</TS>
