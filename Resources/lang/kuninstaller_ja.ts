<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>アンインストールの確認</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Norvane Clipwright を
削除してもよろしいですか？</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>エフェクト素材もすべて削除する</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright のアンインストール</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>アップデートを
確認できませんでした。</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>すでに最新バージョンを
お使いです。</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>アップデートを
ダウンロードできませんでした。</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>インストールできませんでした。</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright のアンインストール</translation>
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
        <translation>こんにちは。

Norvane Technology でエンジニアをしている Arlen です。私たちは、使いやすいソフトウェアづくりに取り組んでいます。これからも、より多くのお客様にご満足いただけるよう努めてまいります。

ご意見をお寄せいただき、感謝いたします。
またのご利用をお待ちしております。

ありがとうございました。</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>アンインストールの理由を
お聞かせください</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>自分の PC で強制終了やフリーズが起きた</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>価格が見合わない</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>必要な機能がない</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>使い方が難しすぎる</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>もっと良いツールを見つけた</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>問題の内容</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>続行</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>どのような問題があったかお書きください。</translation>
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
        <translation>すべて</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>クリエイティブ</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>仕事効率化</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>ユーティリティ</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>ほかのおすすめアプリ</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
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
        <translation>Norvane Clipwright のアンインストール</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>読み込み中</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
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
        <translation>ご意見ありがとうございます。
アンインストールしています…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>残り時間：約 15 秒</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>アンインストールの進行状況</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>メールアドレス</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>有効なメールアドレスを入力してください。</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>ほかのおすすめアプリ</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>ほかの製品を見る</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>アンインストールできませんでした</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>アンインストール中にエラーが発生しました。
もう一度お試しください。</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>残り時間：約 %1 秒</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>アンインストールが完了しました</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>最新情報をメールで受け取る</translation>
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
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>アップデートしています。しばらくお待ちください。</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>アップデートの進行状況</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>アップデートが完了しました</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>新しいバージョンはさらに安定し、高速になりました。</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>起動</translation>
    </message>
</context>
</TS>
