#include "net/knetworkproxymgr.h"

#include "app/env/appenv.h"
#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkProxyFactory>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;
using Proxy = QNetworkProxy;

namespace {

/// Applied before each test, so that a test sees whether something was applied.
Proxy proxyBefore()
{
    return {Proxy::HttpProxy, QStringLiteral("before.invalid"), 1};
}

Proxy noProxy()
{
    return Proxy(Proxy::NoProxy);
}

ProxyInfo proxyInfo(qint32 mode, qint32 type, const QString &server, qint32 port)
{
    ProxyInfo info;
    info.mode = mode;
    info.type = type;
    info.server = server;
    info.port = port;
    return info;
}

} // namespace

Q_DECLARE_METATYPE(QNetworkProxy::ProxyType)

class TestKNetworkProxyMgr : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase();

    void isTheOnlyInstanceUntilReleased();
    void appliesNothingUntilSettingsAreLoadedOrSet();
    void meansNoProxyWithoutSettings_data();
    void meansNoProxyWithoutSettings();
    void readsEverySetting();
    void readsSettingsAfreshWithEachLoad();
    void writesNoSettings();
    void clampsModeAndTypeWhenLoading_data();
    void clampsModeAndTypeWhenLoading();
    void appliesWhatItLoads_data();
    void appliesWhatItLoads();
    void keepsARecordAsItIsGiven();
    void appliesNothingForARecordOutOfRange_data();
    void appliesNothingForARecordOutOfRange();
    void choosesTheProxyTypeForTheKind_data();
    void choosesTheProxyTypeForTheKind();
    void startsTheHostThreeCharactersBehindTheFirstColon_data();
    void startsTheHostThreeCharactersBehindTheFirstColon();
    void meansNoProxyForAPortOutOfRange_data();
    void meansNoProxyForAPortOutOfRange();
    void meansNoProxyWithoutServer();
    void handsUserAndPasswordToTheProxy();
    void usesTheSystemsConfiguration();
    void answersAQuestionForCredentials();
    void survivesAQuestionWithoutAuthenticator();
    void sendsRequestsThroughTheProxy();
    void logsInToTheProxyWhenConnectedToAnAccessManager();
    void proxyThatKeepsAskingIsAFailure();

private:
    void writeSettings(const QByteArray &lines) const;

    std::unique_ptr<Sandbox> m_sandbox;
};

void TestKNetworkProxyMgr::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    Proxy::setApplicationProxy(proxyBefore());
}

void TestKNetworkProxyMgr::cleanup()
{
    KNetworkProxyMgr::release();
    m_sandbox.reset();
}

void TestKNetworkProxyMgr::cleanupTestCase()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    Proxy::setApplicationProxy(noProxy());
}

void TestKNetworkProxyMgr::writeSettings(const QByteArray &lines) const
{
    m_sandbox->writeFile(QStringLiteral("ProgramData/Norvane Clipwright/KConfig.ini"), lines);
}

void TestKNetworkProxyMgr::isTheOnlyInstanceUntilReleased()
{
    const QPointer<KNetworkProxyMgr> first = KNetworkProxyMgr::instance();
    QVERIFY(first);
    QVERIFY(!first->parent());
    QCOMPARE(KNetworkProxyMgr::instance(), first.data());
    first->setProxyInfo(proxyInfo(0, 0, QString(), 0));
    KNetworkProxyMgr::release();
    QVERIFY(!first);
    KNetworkProxyMgr::release();
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().mode, -1);
}

void TestKNetworkProxyMgr::appliesNothingUntilSettingsAreLoadedOrSet()
{
    const ProxyInfo info = KNetworkProxyMgr::instance()->proxyInfo();
    QCOMPARE(info.mode, -1);
    QCOMPARE(info.type, 2);
    QCOMPARE(info.port, 0);
    QVERIFY(info.server.isEmpty());
    QVERIFY(info.user.isEmpty());
    QVERIFY(info.password.isEmpty());
    QCOMPARE(Proxy::applicationProxy(), proxyBefore());
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
}

void TestKNetworkProxyMgr::meansNoProxyWithoutSettings_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("no file") << QByteArray();
    QTest::newRow("no group") << QByteArray("[Uid]\nUid=1\n");
    QTest::newRow("keys outside the group")
        << QByteArray("Mode=2\nServer=10.0.0.1\nPort=80\n[Uid]\nMode=2\n");
    QTest::newRow("empty group") << QByteArray("[ProxyInfo]\n");
    QTest::newRow("not an ini file") << QByteArray("\0\xff\x01{]", 5);
    QTest::newRow("mode is a word")
        << QByteArray("[ProxyInfo]\nMode=manual\nServer=10.0.0.1\nPort=80\n");
}

void TestKNetworkProxyMgr::meansNoProxyWithoutSettings()
{
    QFETCH(QByteArray, lines);
    if (!lines.isEmpty())
        writeSettings(lines);
    KNetworkProxyMgr::instance()->loadSettings();
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().mode, 0);
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().type, 0);
    QCOMPARE(Proxy::applicationProxy(), noProxy());
}

void TestKNetworkProxyMgr::readsEverySetting()
{
    writeSettings("[ProxyInfo]\nMode=2\nType=1\nServer=socks4://proxy.example\nPort=1080\n"
                  "User=robin\nPassword=\"a, b; c=d\"\n");
    KNetworkProxyMgr::instance()->loadSettings();
    const ProxyInfo info = KNetworkProxyMgr::instance()->proxyInfo();
    QCOMPARE(info.mode, 2);
    QCOMPARE(info.type, 1);
    QCOMPARE(info.server, QStringLiteral("socks4://proxy.example"));
    QCOMPARE(info.port, 1080);
    QCOMPARE(info.user, QStringLiteral("robin"));
    QCOMPARE(info.password, QStringLiteral("a, b; c=d"));
}

void TestKNetworkProxyMgr::readsSettingsAfreshWithEachLoad()
{
    writeSettings("[ProxyInfo]\nMode=2\nServer=10.0.0.1\nPort=80\nUser=robin\n");
    KNetworkProxyMgr::instance()->loadSettings();
    QCOMPARE(Proxy::applicationProxy().hostName(), QStringLiteral("10.0.0.1"));
    QVERIFY(QFile::remove(AppEnv::accountIniPath()));
    KNetworkProxyMgr::instance()->loadSettings();
    QVERIFY(KNetworkProxyMgr::instance()->proxyInfo().server.isEmpty());
    QVERIFY(KNetworkProxyMgr::instance()->proxyInfo().user.isEmpty());
    QCOMPARE(Proxy::applicationProxy(), noProxy());
}

void TestKNetworkProxyMgr::writesNoSettings()
{
    const QByteArray lines = "[ProxyInfo]\nMode=5\nType=9\n";
    writeSettings(lines);
    KNetworkProxyMgr::instance()->loadSettings();
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(0, 0, QString(), 0));
    KNetworkProxyMgr::release();
    QCOMPARE(Sandbox::readFile(AppEnv::accountIniPath()), lines);
}

void TestKNetworkProxyMgr::clampsModeAndTypeWhenLoading_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<int>("loaded");
    QTest::newRow("far below") << QByteArray("-2147483648") << 0;
    QTest::newRow("-3") << QByteArray("-3") << 0;
    QTest::newRow("-1") << QByteArray("-1") << 0;
    QTest::newRow("0") << QByteArray("0") << 0;
    QTest::newRow("1") << QByteArray("1") << 1;
    QTest::newRow("2") << QByteArray("2") << 2;
    QTest::newRow("3") << QByteArray("3") << 2;
    QTest::newRow("5") << QByteArray("5") << 2;
    QTest::newRow("far above") << QByteArray("2147483647") << 2;
    QTest::newRow("a word") << QByteArray("manual") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void TestKNetworkProxyMgr::clampsModeAndTypeWhenLoading()
{
    QFETCH(QByteArray, written);
    QFETCH(int, loaded);
    writeSettings("[ProxyInfo]\nMode=" + written + "\nType=" + written + "\n");
    KNetworkProxyMgr::instance()->loadSettings();
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().mode, loaded);
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().type, loaded);
}

void TestKNetworkProxyMgr::appliesWhatItLoads_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QNetworkProxy>("proxy");
    const QString host = QStringLiteral("10.0.0.1");
    QTest::newRow("manual, SOCKS4, with a prefix")
        << QByteArray("Mode=2\nType=1\nServer=socks5://10.0.0.1\nPort=1080\n")
        << Proxy(Proxy::Socks5Proxy, host, 1080);
    QTest::newRow("mode above the last one")
        << QByteArray("Mode=5\nType=0\nServer=10.0.0.1\nPort=8080\n")
        << Proxy(Proxy::HttpProxy, host, 8080);
    QTest::newRow("mode below the first one")
        << QByteArray("Mode=-3\nType=0\nServer=10.0.0.1\nPort=8080\n") << noProxy();
    QTest::newRow("type above the last one")
        << QByteArray("Mode=2\nType=7\nServer=10.0.0.1\nPort=8080\n")
        << Proxy(Proxy::Socks5Proxy, host, 8080);
    QTest::newRow("type below the first one")
        << QByteArray("Mode=2\nType=-1\nServer=10.0.0.1\nPort=8080\n")
        << Proxy(Proxy::HttpProxy, host, 8080);
    QTest::newRow("no type") << QByteArray("Mode=2\nServer=10.0.0.1\nPort=8080\n")
                             << Proxy(Proxy::HttpProxy, host, 8080);
    QTest::newRow("off, with everything filled in")
        << QByteArray("Mode=0\nType=2\nServer=10.0.0.1\nPort=1080\nUser=robin\nPassword=x\n")
        << noProxy();
    QTest::newRow("port zero") << QByteArray("Mode=2\nServer=10.0.0.1\nPort=0\n") << noProxy();
    QTest::newRow("port too large")
        << QByteArray("Mode=2\nServer=10.0.0.1\nPort=70000\n") << noProxy();
    QTest::newRow("port is a word")
        << QByteArray("Mode=2\nServer=10.0.0.1\nPort=http\n") << noProxy();
    QTest::newRow("no port") << QByteArray("Mode=2\nServer=10.0.0.1\n") << noProxy();
    QTest::newRow("no server") << QByteArray("Mode=2\nPort=80\n") << noProxy();
}

void TestKNetworkProxyMgr::appliesWhatItLoads()
{
    QFETCH(QByteArray, lines);
    QFETCH(QNetworkProxy, proxy);
    writeSettings("[ProxyInfo]\n" + lines);
    KNetworkProxyMgr::instance()->loadSettings();
    QCOMPARE(Proxy::applicationProxy(), proxy);
}

void TestKNetworkProxyMgr::keepsARecordAsItIsGiven()
{
    ProxyInfo given = proxyInfo(9, -4, QStringLiteral("http://host:80"), 70000);
    given.user = QStringLiteral("robin");
    given.password = QStringLiteral("secret");
    KNetworkProxyMgr::instance()->setProxyInfo(given);
    const ProxyInfo kept = KNetworkProxyMgr::instance()->proxyInfo();
    QCOMPARE(kept.mode, 9);
    QCOMPARE(kept.type, -4);
    QCOMPARE(kept.port, 70000);
    QCOMPARE(kept.server, given.server);
    QCOMPARE(kept.user, given.user);
    QCOMPARE(kept.password, given.password);
}

void TestKNetworkProxyMgr::appliesNothingForARecordOutOfRange_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("type");
    QTest::newRow("mode below") << -1 << 0;
    QTest::newRow("mode above") << 3 << 0;
    QTest::newRow("type below, no proxy") << 0 << -1;
    QTest::newRow("type above, no proxy") << 0 << 3;
    QTest::newRow("type below, system") << 1 << -1;
    QTest::newRow("type above, manual") << 2 << 3;
    QTest::newRow("both") << -7 << 70;
}

void TestKNetworkProxyMgr::appliesNothingForARecordOutOfRange()
{
    QFETCH(int, mode);
    QFETCH(int, type);
    KNetworkProxyMgr::instance()->setProxyInfo(
        proxyInfo(mode, type, QStringLiteral("10.0.0.1"), 80));
    QCOMPARE(Proxy::applicationProxy(), proxyBefore());
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
}

void TestKNetworkProxyMgr::choosesTheProxyTypeForTheKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QNetworkProxy::ProxyType>("type");
    QTest::newRow("HTTP") << 0 << Proxy::HttpProxy;
    QTest::newRow("SOCKS4") << 1 << Proxy::Socks5Proxy;
    QTest::newRow("SOCKS5") << 2 << Proxy::Socks5Proxy;
}

void TestKNetworkProxyMgr::choosesTheProxyTypeForTheKind()
{
    QFETCH(int, kind);
    QFETCH(QNetworkProxy::ProxyType, type);
    KNetworkProxyMgr::instance()->setProxyInfo(
        proxyInfo(2, kind, QStringLiteral("10.0.0.1"), 1080));
    QCOMPARE(Proxy::applicationProxy(), Proxy(type, QStringLiteral("10.0.0.1"), 1080));
}

void TestKNetworkProxyMgr::startsTheHostThreeCharactersBehindTheFirstColon_data()
{
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("host");
    const QString host = QStringLiteral("proxy.example");
    QTest::newRow("no prefix") << host << host;
    QTest::newRow("http") << QStringLiteral("http://proxy.example") << host;
    QTest::newRow("socks4") << QStringLiteral("socks4://proxy.example") << host;
    QTest::newRow("socks5") << QStringLiteral("socks5://proxy.example") << host;
    QTest::newRow("another scheme") << QStringLiteral("https://proxy.example") << host;
    QTest::newRow("upper case") << QStringLiteral("HTTP://proxy.example") << host;
    QTest::newRow("host and port") << QStringLiteral("10.1.1.1:8080") << QStringLiteral("80");
    QTest::newRow("prefix, host and port")
        << QStringLiteral("http://proxy.example:80") << QStringLiteral("proxy.example:80");
    QTest::newRow("IPv6") << QStringLiteral("::1") << QString();
    QTest::newRow("short port") << QStringLiteral("host:8") << QString();
    QTest::newRow("prefix only") << QStringLiteral("http://") << QString();
    QTest::newRow("colon only") << QStringLiteral(":") << QString();
}

void TestKNetworkProxyMgr::startsTheHostThreeCharactersBehindTheFirstColon()
{
    QFETCH(QString, server);
    QFETCH(QString, host);
    for (const qint32 type : {0, 1, 2}) {
        KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(2, type, server, 8080));
        const Proxy applied = Proxy::applicationProxy();
        QCOMPARE(applied.type(), type == 0 ? Proxy::HttpProxy : Proxy::Socks5Proxy);
        QCOMPARE(applied.hostName(), host);
        QCOMPARE(applied.port(), quint16(8080));
    }
}

void TestKNetworkProxyMgr::meansNoProxyForAPortOutOfRange_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<bool>("isPort");
    QTest::newRow("far below") << -2147483647 << false;
    QTest::newRow("-1") << -1 << false;
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("65535") << 65535 << true;
    QTest::newRow("65536") << 65536 << false;
    QTest::newRow("70000") << 70000 << false;
    QTest::newRow("far above") << 2147483647 << false;
}

void TestKNetworkProxyMgr::meansNoProxyForAPortOutOfRange()
{
    QFETCH(int, port);
    QFETCH(bool, isPort);
    const QString host = QStringLiteral("10.0.0.1");
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(2, 0, host, port));
    QCOMPARE(Proxy::applicationProxy(),
             isPort ? Proxy(Proxy::HttpProxy, host, static_cast<quint16>(port)) : noProxy());
}

void TestKNetworkProxyMgr::meansNoProxyWithoutServer()
{
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(2, 0, QString(), 80));
    QCOMPARE(Proxy::applicationProxy(), noProxy());
}

void TestKNetworkProxyMgr::handsUserAndPasswordToTheProxy()
{
    ProxyInfo info = proxyInfo(2, 2, QStringLiteral("10.0.0.1"), 1080);
    info.user = QStringLiteral("robin");
    info.password = QStringLiteral("secret");
    KNetworkProxyMgr::instance()->setProxyInfo(info);
    QCOMPARE(Proxy::applicationProxy(),
             Proxy(Proxy::Socks5Proxy, info.server, 1080, info.user, info.password));
}

void TestKNetworkProxyMgr::usesTheSystemsConfiguration()
{
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(1, 0, QStringLiteral("10.0.0.1"), 80));
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    QVERIFY(Proxy::applicationProxy().hostName() != QLatin1String("10.0.0.1"));

    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(0, 0, QString(), 0));
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
}

void TestKNetworkProxyMgr::answersAQuestionForCredentials()
{
    ProxyInfo info;
    info.user = QStringLiteral("robin");
    info.password = QStringLiteral("secret");
    KNetworkProxyMgr::instance()->setProxyInfo(info);
    QAuthenticator authenticator;
    KNetworkProxyMgr::instance()->slotProxyAuthenticationRequired(proxyBefore(), &authenticator);
    QCOMPARE(authenticator.user(), QStringLiteral("robin"));
    QCOMPARE(authenticator.password(), QStringLiteral("secret"));
}

void TestKNetworkProxyMgr::survivesAQuestionWithoutAuthenticator()
{
    KNetworkProxyMgr::instance()->slotProxyAuthenticationRequired(proxyBefore(), nullptr);
}

void TestKNetworkProxyMgr::sendsRequestsThroughTheProxy()
{
    ScriptedServer proxy;
    const QUrl address(proxy.url());
    const QString link = QStringLiteral("http://nowhere.invalid/a");
    proxy.answer(link, Answer::ok("text"));
    KNetworkProxyMgr::instance()->setProxyInfo(
        proxyInfo(2, 0, QStringLiteral("http://") + address.host(), address.port()));
    QNetworkAccessManager manager;
    KBaseTask task(&manager, link);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(proxy.paths(), QStringList(link));
}

void TestKNetworkProxyMgr::logsInToTheProxyWhenConnectedToAnAccessManager()
{
    ScriptedServer proxy;
    const QUrl address(proxy.url());
    const QString link = QStringLiteral("http://nowhere.invalid/a");
    proxy.answer(link,
                 {Answer::error(407).withHeader("Proxy-Authenticate", "Basic realm=\"proxy\""),
                  Answer::ok("text")});
    ProxyInfo info = proxyInfo(2, 0, address.host(), address.port());
    KNetworkProxyMgr::instance()->setProxyInfo(info);
    // The proxy in use does not know the credentials, so they have to be asked for.
    info.mode = -1;
    info.user = QStringLiteral("robin");
    info.password = QStringLiteral("secret");
    KNetworkProxyMgr::instance()->setProxyInfo(info);

    QNetworkAccessManager manager;
    connect(&manager, &QNetworkAccessManager::proxyAuthenticationRequired,
            KNetworkProxyMgr::instance(), &KNetworkProxyMgr::slotProxyAuthenticationRequired);
    KBaseTask task(&manager, link);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(proxy.requests().constLast().headers.value("proxy-authorization"),
             "Basic " + QByteArray("robin:secret").toBase64());
}

void TestKNetworkProxyMgr::proxyThatKeepsAskingIsAFailure()
{
    ScriptedServer proxy;
    const QUrl address(proxy.url());
    const QString link = QStringLiteral("http://nowhere.invalid/a");
    proxy.answer(link,
                 Answer::error(407).withHeader("Proxy-Authenticate", "Basic realm=\"proxy\""));
    ProxyInfo info = proxyInfo(2, 0, address.host(), address.port());
    info.user = QStringLiteral("robin");
    info.password = QStringLiteral("secret");
    KNetworkProxyMgr::instance()->setProxyInfo(info);

    KBaseTask task(Net::sharedAccessManager(), link); // as the program makes its requests
    task.start();
    task.waitForFinished(20000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed); // the time was not over
    QCOMPARE(proxy.requests().size(), 2);           // it was tried with the password, once
    QVERIFY(proxy.requests().constLast().headers.contains("proxy-authorization"));
}

QTEST_GUILESS_MAIN(TestKNetworkProxyMgr)
#include "test_knetworkproxymgr.moc"
