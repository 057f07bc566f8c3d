#include "app/env/languages.h"
#include "config/content/configcontent.h"
#include "tests/support/literals.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

class TestLoadBuiltin : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void languageWithoutBuiltinDocumentGivesEmptyLists();
    void unknownLanguageGetsTheEnglishDocument();
};

void TestLoadBuiltin::languageWithoutBuiltinDocumentGivesEmptyLists()
{
    const Sandbox sandbox;
    sandbox->writeProductIni("CHS"_s);
    QCOMPARE(Config::configLanguageCode(), "zh"_s);
    QVERIFY(Config::loadConfig().isEmpty());
    QVERIFY(Config::problemTypeList().isEmpty());
    QVERIFY(Config::recommendedList().isEmpty());
    QVERIFY(Languages::translatorFileName(QString()).endsWith(QLatin1String("_en.qm")));
}

void TestLoadBuiltin::unknownLanguageGetsTheEnglishDocument()
{
    const Sandbox sandbox;
    sandbox->writeProductIni("xyz"_s);
    QCOMPARE(Config::loadConfig().value(QLatin1String("pid")), QJsonValue(846));
    QCOMPARE(Config::problemTypeList().size(), 9);
    QVERIFY(Config::recommendedList().size() >= 4);
}

QTEST_GUILESS_MAIN(TestLoadBuiltin)
#include "test_loadbuiltin.moc"
