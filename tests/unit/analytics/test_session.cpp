#include "analytics/baseinfo.h"
#include "analytics/session.h"
#include "platform/machineinfo.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

class TestSession : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void folderIsMadeInTheProgramsDataFolder();
    void sessionIsOpenedDescribedUsedAndClosed();
    void propertiesArePassedAsIndentedJson();
    void textOutsideAsciiArrivesWhole();
};

void TestSession::folderIsMadeInTheProgramsDataFolder()
{
    const Sandbox sandbox;
    const QString folder =
        sandbox.path(QStringLiteral("Temp/Norvane Clipwright Uninstaller/Analystic"));
    QCOMPARE(Analytics::analyticsDir(), folder);
    QVERIFY(QDir(folder).exists());
}

void TestSession::sessionIsOpenedDescribedUsedAndClosed()
{
    const Sandbox sandbox;
    Analytics::initAnalytics();
    Analytics::sendBaseInfo();
    Analytics::sendEvent(QStringLiteral("DoRetain"), QStringLiteral("UpgradeCompleted"), {});
    Analytics::stopAnalytics();

    const QList<QJsonObject> calls = AnalyticsRecord::calls();
    QCOMPARE(calls.size(), 4);
    QCOMPARE(calls.at(0), QJsonObject({{QLatin1String("call"), QLatin1String("data_init")},
                                       {QLatin1String("folder"), Analytics::analyticsDir()},
                                       {QLatin1String("company"), QLatin1String("Norvane")}}));

    const Analytics::BaseInfo info = Analytics::gatherBaseInfo(Platform::computerName());
    QCOMPARE(calls.at(1).value(QLatin1String("arguments")).toArray(),
             QJsonArray({QLatin1String("UA-Clipwright-Win"), 8461, QLatin1String("7.2.1.4"),
                         info.timeZoneOffset, info.localIPv4, QLatin1String("ENG"),
                         QLatin1String("Windows"), info.osVersion, 64, info.systemLanguage,
                         info.installTime, QLatin1String(""), QLatin1String("20260417")}));
    QCOMPARE(calls.at(2).value(QLatin1String("reserved")), QJsonValue(0));
    QCOMPARE(calls.at(3), QJsonObject({{QLatin1String("call"), QLatin1String("data_stop")},
                                       {QLatin1String("milliseconds"), 3000}}));
}

void TestSession::propertiesArePassedAsIndentedJson()
{
    const Sandbox sandbox;
    Analytics::initAnalytics();
    const QJsonObject properties{{QLatin1String("a"), QLatin1String("1")}};
    Analytics::sendEvent(QStringLiteral("DoUninstall"), QStringLiteral("Some"), properties);
    Analytics::sendEvent(QStringLiteral("DoUninstall"), QStringLiteral("None"), {});
    Analytics::stopAnalytics();

    const QList<QJsonObject> calls = AnalyticsRecord::calls();
    QCOMPARE(calls.at(1).value(QLatin1String("properties")).toString().toUtf8(),
             QJsonDocument(properties).toJson());
    QCOMPARE(calls.at(2).value(QLatin1String("properties")).toString(), QStringLiteral("{\n}\n"));
}

void TestSession::textOutsideAsciiArrivesWhole()
{
    const Sandbox sandbox;
    Analytics::initAnalytics();
    const QJsonObject properties{{QLatin1String("text"), QStringLiteral("ärger \"動画\" 🎬\n\\")}};
    Analytics::sendEvent(QStringLiteral("DoUninstall"), QStringLiteral("Some"), properties);
    Analytics::stopAnalytics();
    QCOMPARE(AnalyticsRecord::events().constFirst().properties, properties);
}

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
