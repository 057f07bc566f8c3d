#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryFile>
#include <QtNetwork/QNetworkAccessManager>
#include <QtTest/QTest>

class TestSharedAccessManager : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeOnFirstUseAndShared();
    void belongsToTheApplication();
    void fetchesFromTheWebAlone_data();
    void fetchesFromTheWebAlone();
    void followsRedirectsInTheWeb();
    void followsNoRedirectOutOfTheWeb_data();
    void followsNoRedirectOutOfTheWeb();
};

namespace {

/// A file that could be read.
QString localFile()
{
    static QTemporaryFile file;
    if (file.fileName().isEmpty() && (!file.open() || file.write("secret") != 6 || !file.flush()))
        qFatal("cannot write a file");
    return file.fileName();
}

} // namespace

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

void TestSharedAccessManager::fetchesFromTheWebAlone_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("file") << QUrl::fromLocalFile(localFile()).toString();
    QTest::newRow("file, oddly written") << QStringLiteral("FILE:") + localFile();
    QTest::newRow("path") << localFile();
    QTest::newRow("share") << QStringLiteral("file://share.invalid/folder/a.png");
    QTest::newRow("share in capitals") << QStringLiteral("FILE://share.invalid/folder/a.png");
    QTest::newRow("data") << QStringLiteral("data:text/plain,secret");
    QTest::newRow("resource") << QStringLiteral("qrc:/a.png");
    QTest::newRow("ftp") << QStringLiteral("ftp://127.0.0.1/a.png");
    QTest::newRow("script") << QStringLiteral("javascript:alert(1)");
    QTest::newRow("nothing") << QString();
}

void TestSharedAccessManager::fetchesFromTheWebAlone()
{
    QFETCH(QString, link);
    KBaseTask task(Net::sharedAccessManager(), link);
    task.start();
    task.waitForFinished(10000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(task.readAll(), QByteArray());
}

void TestSharedAccessManager::followsRedirectsInTheWeb()
{
    ScriptedServer server;
    server.answer(QStringLiteral("/a"),
                  ScriptedServer::Answer::redirect(server.url(QStringLiteral("/b"))));
    server.answer(QStringLiteral("/b"), ScriptedServer::Answer::ok("from the web"));
    KBaseTask task(Net::sharedAccessManager(), server.url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(10000);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("from the web"));
}

void TestSharedAccessManager::followsNoRedirectOutOfTheWeb_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("file") << QUrl::fromLocalFile(localFile()).toString();
    QTest::newRow("share") << QStringLiteral("file://share.invalid/folder/a.png");
    QTest::newRow("share in capitals") << QStringLiteral("FILE://share.invalid/folder/a.png");
    QTest::newRow("data") << QStringLiteral("data:text/plain,secret");
}

void TestSharedAccessManager::followsNoRedirectOutOfTheWeb()
{
    QFETCH(QString, target);
    ScriptedServer server;
    server.answer(QStringLiteral("/a"), ScriptedServer::Answer::redirect(target));
    KBaseTask task(Net::sharedAccessManager(), server.url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(10000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(task.errorString(), QStringLiteral("Protocol \"\" is unknown")); // nobody was asked
    QCOMPARE(task.readAll(), QByteArray());
}

QTEST_GUILESS_MAIN(TestSharedAccessManager)
#include "test_sharedaccessmanager.moc"
