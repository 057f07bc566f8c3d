#include "platform/narrowtext.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>
#include <atomic>
#include <clocale>
#include <thread>

class TestNarrowText : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void textSurvivesThereAndBack_data();
    void textSurvivesThereAndBack();
    void fileNames();
    void conversionChangesNoLocale();
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

void TestNarrowText::conversionChangesNoLocale()
{
    const auto locale = [] { return QByteArray(std::setlocale(LC_ALL, nullptr)); };
    const QByteArray previous = locale();
    QByteArray converters;
    std::atomic<bool> done{false};
    std::thread converter([&] {
        for (int count = 0; count < 2000; ++count)
            Platform::wideFromNarrow("text");
        converters = locale();
        done = true;
    });
    QByteArray seen = previous;
    while (!done && seen == previous)
        seen = locale();
    converter.join();
    QCOMPARE(seen, previous);
    QCOMPARE(converters, previous);
}

QTEST_APPLESS_MAIN(TestNarrowText)
#include "test_narrowtext.moc"
