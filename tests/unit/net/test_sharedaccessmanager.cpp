#include "net/sharedaccessmanager.h"
#include "tests/support/testcase.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QNetworkAccessManager>
#include <QtTest/QTest>

class TestSharedAccessManager : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeOnFirstUseAndShared();
    void belongsToTheApplication();
};

void TestSharedAccessManager::isMadeOnFirstUseAndShared()
{
    QVERIFY(!QCoreApplication::instance()->findChild<QNetworkAccessManager *>());
    QNetworkAccessManager *manager = Net::sharedAccessManager();
    QVERIFY(manager);
    QCOMPARE(Net::sharedAccessManager(), manager);
}

void TestSharedAccessManager::belongsToTheApplication()
{
    QCOMPARE(Net::sharedAccessManager()->parent(),
             static_cast<QObject *>(QCoreApplication::instance()));
}

QTEST_GUILESS_MAIN(TestSharedAccessManager)
#include "test_sharedaccessmanager.moc"
