#include "platform/narrowtext.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

class TestNarrowText : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void textSurvivesThereAndBack_data();
    void textSurvivesThereAndBack();
    void fileNames();
};

void TestNarrowText::textSurvivesThereAndBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("ascii") << QStringLiteral("{\"pid\":\"8461\"}\n");
    QTest::newRow("umlaut") << QStringLiteral("C:/Users/Jörg");
#ifndef Q_OS_WIN // an ANSI code page has one script, not all
    QTest::newRow("kana") << QStringLiteral("動画/ファイル");
    QTest::newRow("outside the basic plane") << QStringLiteral("🎬");
#endif
}

void TestNarrowText::textSurvivesThereAndBack()
{
    QFETCH(QString, text);
    const std::string narrow = Platform::narrowFromWide(text.toStdWString());
    QCOMPARE(QString::fromStdWString(Platform::wideFromNarrow(narrow)), text);
}

void TestNarrowText::fileNames()
{
    const QString name = QStringLiteral("C:/Users/Jörg/update.json");
    QCOMPARE(Platform::fromNarrow(Platform::narrowFromWide(name.toStdWString())), name);
}

QTEST_APPLESS_MAIN(TestNarrowText)
#include "test_narrowtext.moc"
