#include "net/sharedaccessmanager.h"
#include "tests/support/testcase.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QScopedPointer>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestSharedAccessManager : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeOnFirstUseAndShared();
    void belongsToTheApplication();
    void speaksNothingButHttp_data();
    void speaksNothingButHttp();
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

void TestSharedAccessManager::speaksNothingButHttp_data()
{
    QTest::addColumn<QUrl>("url");

    const auto row = [](const char *name, const QUrl &url) { QTest::newRow(name) << url; };
    row("file", QUrl::fromLocalFile(QCoreApplication::applicationFilePath()));
    row("file of another machine", QUrl(QStringLiteral("file://server/share/picture.png")));
    row("resource", QUrl(QStringLiteral("qrc:/qt-project.org/qmime/packages/freedesktop.org.xml")));
    row("data", QUrl(QStringLiteral("data:,text")));
    row("ftp", QUrl(QStringLiteral("ftp://127.0.0.1/picture.png")));
    row("no scheme", QUrl(QCoreApplication::applicationFilePath()));
    row("nothing", QUrl());
}

void TestSharedAccessManager::speaksNothingButHttp()
{
    QFETCH(QUrl, url);
    const QScopedPointer<QNetworkReply, QScopedPointerDeleteLater> reply(
        Net::sharedAccessManager()->get(QNetworkRequest(url)));
    const QSignalSpy finished(reply.data(), &QNetworkReply::finished);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(reply->error(), QNetworkReply::ProtocolUnknownError);
    QCOMPARE(reply->readAll(), QByteArray());
}

QTEST_GUILESS_MAIN(TestSharedAccessManager)
#include "test_sharedaccessmanager.moc"
