#include "app/env/languages.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QTranslator>
#include <QtTest/QTest>

class TestLanguages : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void catalogueCode_data();
    void catalogueCode();
    void fileOfARequestedLanguage();
    void fileOfTheInstallationsLanguage();
    void missingIniGivesEnglish();
    void catalogueTranslates_data();
    void catalogueTranslates();
    void sourceTextsShowWithoutACatalogue();
};

void TestLanguages::catalogueCode_data()
{
    QTest::addColumn<QString>("installerCode");
    QTest::addColumn<QString>("code");
    const char *table[][2] = {
        {"ENG", "en"},
        {"SWE", "sv"},
        {"CHT", "zh"},
        {"ZHH", "zh"},
        {"ESP", "es"},
        {"DEU", "de"},
        {"FRA", "fr"},
        {"ITA", "it"},
        {"JPN", "ja"},
        {"KOR", "ko"},
        {"PTG", "pt"},
        {"RUS", "ru"},
        {"ARG", "ar"},
        {"NLD", "nl"},
        {"PLK", "pl"},
        {"ROM", "ro"},
        {"IDN", "id"},
        // No catalogue of its own, on purpose, though it has configuration documents.
        {"CHS", "en"},
        {"eng", "en"},
        {"deu", "en"},
        {"", "en"},
        {"XXX", "en"},
        {" DEU", "en"}};
    for (const auto &row : table)
        QTest::addRow("\"%s\"", row[0])
            << QString::fromLatin1(row[0]) << QString::fromLatin1(row[1]);
}

void TestLanguages::catalogueCode()
{
    QFETCH(QString, installerCode);
    QTEST(Languages::toLanguageCode(installerCode), "code");
}

void TestLanguages::fileOfARequestedLanguage()
{
    QCOMPARE(Languages::translatorFileName(QStringLiteral("DEU")),
             QStringLiteral(":/Resources/lang/kuninstaller_de.qm"));
    QCOMPARE(Languages::translatorFileName(QStringLiteral("CHS")),
             QStringLiteral(":/Resources/lang/kuninstaller_en.qm"));
}

void TestLanguages::fileOfTheInstallationsLanguage()
{
    const Sandbox sandbox;
    sandbox->writeProductIni(QStringLiteral("CHT"));
    QCOMPARE(Languages::translatorFileName(QString()),
             QStringLiteral(":/Resources/lang/kuninstaller_zh.qm"));
    QTest::qSleep(20); // files of the same size are told apart by their time
    sandbox->writeProductIni(QStringLiteral("ARG"));
    QCOMPARE(Languages::translatorFileName(QString()),
             QStringLiteral(":/Resources/lang/kuninstaller_ar.qm"));
}

void TestLanguages::missingIniGivesEnglish()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    QCOMPARE(Languages::translatorFileName(QString()),
             QStringLiteral(":/Resources/lang/kuninstaller_en.qm"));
}

void TestLanguages::catalogueTranslates_data()
{
    QTest::addColumn<QString>("installerCode");
    QTest::addColumn<QString>("done");
    const char *table[][2] = {
        {"ENG", "Done"},    {"SWE", "Klar"},   {"CHT", "完成"},     {"ZHH", "完成"},
        {"ESP", "Listo"},   {"DEU", "Fertig"}, {"FRA", "Terminer"}, {"ITA", "Fine"},
        {"JPN", "完了"},    {"KOR", "완료"},   {"PTG", "Concluir"}, {"RUS", "Готово"},
        {"ARG", "تم"},      {"NLD", "Gereed"}, {"PLK", "Gotowe"},   {"ROM", "Gata"},
        {"IDN", "Selesai"}, {"CHS", "Done"},   {"", "Done"}};
    for (const auto &row : table)
        QTest::addRow("\"%s\"", row[0]) << QString::fromLatin1(row[0]) << QString::fromUtf8(row[1]);
}

void TestLanguages::catalogueTranslates()
{
    QFETCH(QString, installerCode);
    const Sandbox sandbox; // for the empty code, which asks for the installation's language
    QTranslator translator;
    QVERIFY(translator.load(Languages::translatorFileName(installerCode)));
    QCoreApplication::installTranslator(&translator);
    QTEST(QCoreApplication::translate("UninstallPage", "Done"), "done");
}

void TestLanguages::sourceTextsShowWithoutACatalogue()
{
    const QTemporaryDir folder;
    const QString damaged = folder.filePath(QStringLiteral("kuninstaller_de.qm"));
    QVERIFY(QFile::copy(Languages::translatorFileName(QStringLiteral("DEU")), damaged));
    QVERIFY(QFile::setPermissions(damaged, QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(QFile::resize(damaged, 8));
    const QString missing = folder.filePath(QStringLiteral("kuninstaller_none.qm"));
    for (const QString &file : {missing, damaged}) {
        QTranslator translator;
        QVERIFY(!translator.load(file));
        QCoreApplication::installTranslator(&translator);
        QCOMPARE(QCoreApplication::translate("UninstallPage", "Done"), QStringLiteral("Done"));
    }
}

QTEST_GUILESS_MAIN(TestLanguages)
#include "test_languages.moc"
