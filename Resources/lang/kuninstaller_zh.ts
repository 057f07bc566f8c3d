<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>確認解除安裝</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>確定要移除 Norvane Clipwright 嗎？</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>一併移除所有特效資源檔案</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright 解除安裝程式</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>無法檢查更新。</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>您使用的已是最新版本。</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>無法下載更新。</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>安裝失敗。</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright 解除安裝程式</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
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
        <translation>您好：

我是 Norvane Technology 的工程師 Arlen。我們致力於打造簡單好用的軟體，也會持續努力，讓它更貼近您的需求。

感謝您的寶貴意見。
期待與您再次相見。

謝謝您！</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>能告訴我們您解除安裝的原因嗎？</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>在我的電腦上曾閃退或當機</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>價格不合適</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>缺少我需要的功能</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>操作太困難</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>我找到了更好的工具</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>描述問題</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>繼續</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>請描述您遇到的問題。</translation>
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
        <translation>全部</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>創意</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>生產力</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>公用程式</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>更多推薦應用程式</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>關閉</translation>
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
        <translation>Norvane Clipwright 解除安裝程式</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>正在載入</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>關閉</translation>
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
        <translation>感謝您的意見！
正在解除安裝…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>剩餘時間：約 15 秒</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>解除安裝進度</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>電子郵件地址</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>請輸入有效的電子郵件地址。</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>更多推薦應用程式</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>關閉</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>更多產品</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>解除安裝失敗</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>解除安裝時發生錯誤，請再試一次。</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>剩餘時間：約 %1 秒</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>已成功解除安裝</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>訂閱以掌握最新消息</translation>
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
        <translation>關閉</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>正在升級，請稍候…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>升級進度</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>升級完成</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>新版本更穩定、更快速！</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>啟動</translation>
    </message>
</context>
</TS>
