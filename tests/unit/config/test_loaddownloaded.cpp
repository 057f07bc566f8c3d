#include "config/content/configcontent.h"
#include "tests/support/literals.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QFile>
#include <QtTest/QTest>

class TestLoadDownloaded : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void brokenFileIsNotReplacedButTriedAgain();
};

void TestLoadDownloaded::brokenFileIsNotReplacedButTriedAgain()
{
    const Sandbox sandbox;
    const QString file = "Temp/Norvane Clipwright Uninstaller/Configs/en.cfg"_s;
    for (const char *broken : {"", "{\"problem_type\":", "<html>", "[]", "{}"}) {
        sandbox.writeFile(file, broken);
        QVERIFY2(Config::loadConfig().isEmpty(), broken);
        QVERIFY(Config::problemTypeList().isEmpty());
    }

    // Repaired, it is read at the next call; lists that are not lists are empty.
    // What editors' tools put at the top is passed over.
    sandbox.writeFile(file, R"({"$schema": "schema.json", "problem_type":
                               {"list": [{"value": 1}, 2]}, "recommended": []})");
    QCOMPARE(Config::problemTypeList(), {QJsonObject({{QLatin1String("value"), 1}})});
    QVERIFY(Config::recommendedList().isEmpty());

    // Once read, it stays for the life of the process.
    sandbox.writeFile(file, R"({"problem_type": {"list": []}})");
    QCOMPARE(Config::problemTypeList().size(), 1);
    QVERIFY(QFile::remove(sandbox.path(file)));
    QCOMPARE(Config::problemTypeList().size(), 1);
}

QTEST_GUILESS_MAIN(TestLoadDownloaded)
#include "test_loaddownloaded.moc"
