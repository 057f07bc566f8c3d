<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>제거 확인</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Norvane Clipwright를
제거하시겠습니까?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>효과 리소스 파일도 모두 삭제</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>제거</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Norvane Clipwright 제거</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>업데이트를 확인하지 못했습니다.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>이미 최신 버전을 사용하고 있습니다.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>업데이트를 다운로드하지 못했습니다.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>설치하지 못했습니다.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Norvane Clipwright 제거</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
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
        <translation>안녕하세요.

저는 Norvane Technology의 엔지니어 Arlen입니다. 저희는 사용하기 쉬운 소프트웨어를 만들기 위해 힘쓰고 있습니다. 앞으로도 고객님께 더 잘 맞는 제품이 되도록 최선을 다하겠습니다.

소중한 의견에 감사드립니다.
다시 만나 뵐 수 있기를 바랍니다.

감사합니다!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>제거하시려는 이유를 알려 주시겠습니까?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>제 컴퓨터에서 멈추거나 강제 종료됐어요</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>가격이 적당하지 않아요</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>필요한 기능이 없어요</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>사용하기가 너무 어려워요</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>더 좋은 프로그램을 찾았어요</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>기타</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>문제 설명</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>계속</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>어떤 문제가 있었는지 설명해 주세요.</translation>
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
        <translation>전체</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>창작</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>생산성</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>유틸리티</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>다른 추천 앱</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
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
        <translation>Norvane Clipwright 제거</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>불러오는 중</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
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
        <translation>의견을 보내 주셔서 감사합니다.
제거하는 중…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>남은 시간: 약 15초</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>제거 진행률</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>이메일 주소</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>올바른 이메일 주소를 입력해 주세요.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>다른 추천 앱</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>다른 제품 보기</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>제거하지 못했습니다</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>제거하는 중에 오류가 발생했습니다.
다시 시도해 주세요.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>남은 시간: 약 %1초</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>제거가 완료되었습니다</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>구독하고 최신 소식을 받아 보세요</translation>
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
        <translation>닫기</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>업데이트하는 중입니다. 잠시 기다려 주세요.</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>업데이트 진행률</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>업데이트가 완료되었습니다</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>새 버전은 더욱 안정적이고 빨라졌습니다!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>실행</translation>
    </message>
</context>
</TS>
