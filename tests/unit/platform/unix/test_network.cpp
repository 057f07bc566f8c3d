#include "platform/network.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

class TestNetwork : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void onlineStateComesFromTheSystemIni();
};

void TestNetwork::onlineStateComesFromTheSystemIni()
{
    const Sandbox sandbox;
    for (const bool online : {true, false}) {
        sandbox->setSystemValue(QStringLiteral("System/Online"), QVariant(online).toString());
        QCOMPARE(Platform::isNetworkOnline(), online);
    }
}

QTEST_GUILESS_MAIN(TestNetwork)
#include "test_network.moc"
