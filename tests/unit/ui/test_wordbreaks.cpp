#include "tests/support/testcase.h"
#include "ui/wordbreaks.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextBoundaryFinder>
#include <QtTest/QTest>

class TestWordBreaks : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void linesEndBetweenWords_data();
    void linesEndBetweenWords();
};

// A stroke stands wherever a line may end.
void TestWordBreaks::linesEndBetweenWords_data()
{
    QTest::addColumn<QString>("marked");
    for (const char *marked : {
             "It |runs, |24 |min.",
             "視|窗|會|關|閉。",
             // Korean: at blanks alone
             "Clipwright를 |제거하시겠습니까?",
             "비디오(MP4)와 |오디오",
             "기본부터\n|차근차근",
             // Japanese: where hiragana end
             "アップデートを|確認できませんでした。",
             "フローチャート、|組織図、|マインドマップを|作図",
             "写真や|チャットを|新しい|スマホに|移行",
             "Norvane |Clipwright を|削除してもよろしいですか？",
             "4K動画の|編集",
             // a single kana in a compound verb, and particles of one
             "読み込みに|使い続ける",
             "画面や|音を",
             // polite prefixes
             "理由を|お聞かせください",
             "またの|ご利用",
             "お使い",
             "私の|お茶",
             // two kana and more
             "もし|使えば",
         })
        QTest::newRow(marked) << QString::fromUtf8(marked);
}

void TestWordBreaks::linesEndBetweenWords()
{
    QFETCH(const QString, marked);
    const QString text = QString(marked).remove(QLatin1Char('|'));
    QString shown = WordBreaks::joined(text);
    // Joiners stand in front of letters only, and begin no line.
    const QRegularExpression misplaced(QStringLiteral("\\x{2060}(\\s|\\z)|\\n\\x{2060}"));
    QVERIFY(!shown.contains(misplaced));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, shown);
    finder.toEnd();
    while (finder.toPreviousBoundary() > 0)
        shown.insert(finder.position(), QLatin1Char('|'));
    QCOMPARE(shown.remove(QChar(0x2060)), marked);
}

QTEST_APPLESS_MAIN(TestWordBreaks)
#include "test_wordbreaks.moc"
