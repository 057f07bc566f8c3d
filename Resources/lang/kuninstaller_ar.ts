<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>تأكيد إلغاء التثبيت</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>تأكيد إزالة Norvane Clipwright؟</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>إزالة جميع ملفات موارد التأثيرات أيضًا</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>إزالة</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء الأمر</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>إلغاء تثبيت Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>تعذّر التحقق من وجود تحديثات.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>لديك أحدث إصدار بالفعل.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>تعذّر تنزيل التحديث.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>تعذّر إكمال التثبيت.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>إلغاء تثبيت Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
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
        <translation>مرحبًا،

أنا آرلن، مهندس في شركة Norvane Technology. نحرص على تقديم برامج سهلة الاستخدام، ونبذل جهدنا لتكون ملائمة لك قدر الإمكان.

شكرًا على ملاحظاتك.
نأمل أن نلتقي بك مجددًا.

شكرًا لك!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>ما سبب رغبتك في إلغاء التثبيت؟</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>تعطّل البرنامج أو توقف عن الاستجابة.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>السعر غير مناسب.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>تنقصه الميزات التي أحتاج إليها.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>استخدامه صعب جدًا.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>وجدت أداة أفضل.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>سبب آخر</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>وصف المشكلة</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>متابعة</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء الأمر</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>يرجى وصف المشكلة التي واجهتك.</translation>
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
        <translation>الكل</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>الإبداع</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>الإنتاجية</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>الأدوات</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>تطبيقات مقترحة</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <extracomment>"LTR" for languages that are written from left to right, "RTL" for the others. The framework asks for it when a catalogue is installed and mirrors the whole interface accordingly.</extracomment>
        <translation>RTL</translation>
    </message>
</context>
<context>
    <name>SplashWindow</name>
    <message>
        <source>SplashWindow</source>
        <translation>إلغاء تثبيت Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>جارٍ التحميل</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
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
        <translation>شكرًا على ملاحظاتك!
جارٍ إلغاء التثبيت…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>الوقت المتبقي: نحو 15 ث</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>تقدّم إلغاء التثبيت</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>عنوان البريد الإلكتروني</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>يرجى إدخال عنوان بريد إلكتروني صالح.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>تم</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>تطبيقات مقترحة</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>منتجات أخرى</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>فشل إلغاء التثبيت</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>حدثت أخطاء أثناء إلغاء التثبيت. يرجى المحاولة مرة أخرى.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>الوقت المتبقي: نحو %1 ث</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>تم إلغاء التثبيت بنجاح</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>الاشتراك لتلقي آخر الأخبار</translation>
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
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>جارٍ الترقية، يرجى الانتظار…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>تقدّم الترقية</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء الأمر</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>اكتملت الترقية</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>الإصدار الجديد أكثر استقرارًا وأسرع!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>تشغيل</translation>
    </message>
</context>
</TS>
