#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/literals.h"
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
    QTest::newRow("file, in capitals") << "FILE:"_s + localFile();
    QTest::newRow("path") << localFile();
    QTest::newRow("share") << "file://share.invalid/folder/a.png"_s;
    QTest::newRow("share in capitals") << "FILE://share.invalid/folder/a.png"_s;
    QTest::newRow("data") << "data:text/plain,secret"_s;
    QTest::newRow("resource") << "qrc:/a.png"_s;
    QTest::newRow("ftp") << "ftp://127.0.0.1/a.png"_s;
    QTest::newRow("script") << "javascript:alert(1)"_s;
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
    server.answer("/a"_s, ScriptedServer::Answer::redirect(server.url("/b"_s)));
    server.answer("/b"_s, ScriptedServer::Answer::ok("from the web"));
    KBaseTask task(Net::sharedAccessManager(), server.url("/a"_s));
    task.start();
    task.waitForFinished(10000);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("from the web"));
}

void TestSharedAccessManager::followsNoRedirectOutOfTheWeb_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("file") << QUrl::fromLocalFile(localFile()).toString();
    QTest::newRow("share") << "file://share.invalid/folder/a.png"_s;
    QTest::newRow("share in capitals") << "FILE://share.invalid/folder/a.png"_s;
    QTest::newRow("data") << "data:text/plain,secret"_s;
}

void TestSharedAccessManager::followsNoRedirectOutOfTheWeb()
{
    QFETCH(QString, target);
    ScriptedServer server;
    server.answer("/a"_s, ScriptedServer::Answer::redirect(target));
    KBaseTask task(Net::sharedAccessManager(), server.url("/a"_s));
    task.start();
    task.waitForFinished(10000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(task.errorString(), "Protocol \"\" is unknown"_s); // and no other file was asked for
    QCOMPARE(task.readAll(), QByteArray());
}

QTEST_GUILESS_MAIN(TestSharedAccessManager)
#include "test_sharedaccessmanager.moc"
