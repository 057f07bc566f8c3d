#include "net/knetworkproxymgr.h"

#include "app/env/appenv.h"
#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/sandbox.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkProxyFactory>

using Proxy = QNetworkProxy;
Q_DECLARE_METATYPE(ProxyInfo)

namespace {

/// Applied before each test, so that a test sees whether something was applied.
const Proxy proxyBefore{Proxy::HttpProxy, "before.invalid"_s, 1};
const Proxy noProxy{Proxy::NoProxy};

ProxyInfo proxyInfo(qint32 mode, qint32 type, const QString &server, qint32 port)
{
    ProxyInfo info;
    info.mode = mode;
    info.type = type;
    info.server = server;
    info.port = port;
    return info;
}

ProxyInfo withCredentials(ProxyInfo info)
{
    info.user = "robin"_s;
    info.password = "secret"_s;
    return info;
}

bool isSame(const ProxyInfo &a, const ProxyInfo &b)
{
    return a.mode == b.mode && a.type == b.type && a.port == b.port && a.server == b.server &&
           a.user == b.user && a.password == b.password;
}

} // namespace

class TestKNetworkProxyMgr : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase();

    void isTheOnlyInstanceUntilReleased();
    void appliesNothingUntilSettingsAreLoadedOrSet();
    void appliesWhatItLoads_data();
    void appliesWhatItLoads();
    void clampsModeAndTypeWhenLoading_data();
    void clampsModeAndTypeWhenLoading();
    void readsEverySetting();
    void readsSettingsAfreshWithEachLoad();
    void writesNoSettings();
    void appliesWhatItIsGiven_data();
    void appliesWhatItIsGiven();
    void usesTheSystemsConfiguration();
    void answersAQuestionForCredentials();
    void sendsRequestsThroughTheProxy();
    void logsInToTheProxyWhenConnectedToAnAccessManager();
    void proxyThatKeepsAskingIsAFailure();

private:
    /// Writes the account's settings and loads them.
    ProxyInfo load(const QByteArray &lines) const
    {
        if (!lines.isEmpty())
            m_sandbox->writeFile("ProgramData/Norvane Clipwright/KConfig.ini"_s, lines);
        KNetworkProxyMgr::instance()->loadSettings();
        return KNetworkProxyMgr::instance()->proxyInfo();
    }

    /// Settings by which the server is the proxy.
    ProxyInfo serverAsProxy(const QString &prefix = {}) const
    {
        const QUrl address(m_server->url());
        return proxyInfo(2, 0, prefix + address.host(), address.port());
    }

    const QString m_link = "http://nowhere.invalid/a"_s;
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestKNetworkProxyMgr::init()
{
    NetTest::init();
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    Proxy::setApplicationProxy(proxyBefore);
}

void TestKNetworkProxyMgr::cleanup()
{
    KNetworkProxyMgr::release();
    m_sandbox.reset();
    NetTest::cleanup();
}

void TestKNetworkProxyMgr::cleanupTestCase()
{
    Proxy::setApplicationProxy(noProxy);
}

void TestKNetworkProxyMgr::isTheOnlyInstanceUntilReleased()
{
    const QPointer<KNetworkProxyMgr> first = KNetworkProxyMgr::instance();
    QVERIFY(first);
    QVERIFY(!first->parent());
    QCOMPARE(KNetworkProxyMgr::instance(), first.data());
    first->setProxyInfo(proxyInfo(0, 0, {}, 0));
    KNetworkProxyMgr::release();
    QVERIFY(!first);
    KNetworkProxyMgr::release();
    QCOMPARE(KNetworkProxyMgr::instance()->proxyInfo().mode, -1);
}

void TestKNetworkProxyMgr::appliesNothingUntilSettingsAreLoadedOrSet()
{
    QVERIFY(isSame(KNetworkProxyMgr::instance()->proxyInfo(), proxyInfo(-1, 2, {}, 0)));
    QCOMPARE(Proxy::applicationProxy(), proxyBefore);
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
}

void TestKNetworkProxyMgr::appliesWhatItLoads_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QNetworkProxy>("proxy");
    const auto row = [](const char *name, const QByteArray &lines, const Proxy &proxy = noProxy) {
        QTest::newRow(name) << lines << proxy;
    };
    const QString host = "10.0.0.1"_s;
    const QByteArray manual = "[ProxyInfo]\nMode=2\nServer=10.0.0.1\n";
    row("no file", {});
    row("no group", "[Uid]\nUid=1\n");
    row("keys outside the group", "Mode=2\nServer=10.0.0.1\nPort=80\n[Uid]\nMode=2\n");
    row("empty group", "[ProxyInfo]\n");
    row("not an ini file", QByteArray("\0\xff\x01{]", 5));
    row("mode is a word", "[ProxyInfo]\nMode=manual\nServer=10.0.0.1\nPort=80\n");
    row("manual, no type", manual + "Port=8080\n", {Proxy::HttpProxy, host, 8080});
    row("manual, HTTP", manual + "Port=8080\nType=0\n", {Proxy::HttpProxy, host, 8080});
    row("manual, SOCKS4", manual + "Port=8080\nType=1\n", {Proxy::Socks5Proxy, host, 8080});
    row("manual, type above the last one", manual + "Port=8080\nType=7\n",
        {Proxy::Socks5Proxy, host, 8080});
    row("manual, type below the first one", manual + "Port=8080\nType=-1\n",
        {Proxy::HttpProxy, host, 8080});
    row("manual, with a prefix", "[ProxyInfo]\nMode=2\nServer=socks5://10.0.0.1\nPort=80\n",
        {Proxy::HttpProxy, host, 80});
    row("mode above the last one", "[ProxyInfo]\nMode=5\nServer=10.0.0.1\nPort=80\n",
        {Proxy::HttpProxy, host, 80});
    row("mode below the first one", "[ProxyInfo]\nMode=-3\nServer=10.0.0.1\nPort=80\n");
    row("off, with everything filled in",
        "[ProxyInfo]\nMode=0\nType=2\nServer=10.0.0.1\nPort=80\nUser=robin\nPassword=x\n");
    row("port zero", manual + "Port=0\n");
    row("port too large", manual + "Port=70000\n");
    row("port is a word", manual + "Port=http\n");
    row("no port", manual);
    row("no server", "[ProxyInfo]\nMode=2\nPort=80\n");
}

void TestKNetworkProxyMgr::appliesWhatItLoads()
{
    QFETCH(QByteArray, lines);
    QFETCH(QNetworkProxy, proxy);
    load(lines);
    QCOMPARE(Proxy::applicationProxy(), proxy);
}

void TestKNetworkProxyMgr::clampsModeAndTypeWhenLoading_data()
{
    QTest::addColumn<int>("loaded");
    const QList<QPair<const char *, int>> rows{
        {"-2147483648", 0}, {"-1", 0}, {"0", 0},          {"1", 1},      {"2", 2},
        {"3", 2},           {"5", 2},  {"2147483647", 2}, {"manual", 0}, {"", 0}};
    for (const auto &row : rows)
        QTest::newRow(row.first) << row.second;
}

void TestKNetworkProxyMgr::clampsModeAndTypeWhenLoading()
{
    QFETCH(int, loaded);
    const QByteArray written = QTest::currentDataTag();
    const ProxyInfo info = load("[ProxyInfo]\nMode=" + written + "\nType=" + written + "\n");
    QCOMPARE(info.mode, loaded);
    QCOMPARE(info.type, loaded);
}

void TestKNetworkProxyMgr::readsEverySetting()
{
    const ProxyInfo info = load("[ProxyInfo]\nMode=2\nType=1\nServer=socks4://proxy.example\n"
                                "Port=1080\nUser=robin\nPassword=\"a, b; c=d\"\n");
    ProxyInfo expected = proxyInfo(2, 1, "socks4://proxy.example"_s, 1080);
    expected.user = "robin"_s;
    expected.password = "a, b; c=d"_s;
    QVERIFY(isSame(info, expected));
}

void TestKNetworkProxyMgr::readsSettingsAfreshWithEachLoad()
{
    load("[ProxyInfo]\nMode=2\nServer=10.0.0.1\nPort=80\nUser=robin\n");
    QCOMPARE(Proxy::applicationProxy().hostName(), "10.0.0.1"_s);
    QVERIFY(QFile::remove(AppEnv::accountIniPath()));
    QVERIFY(isSame(load({}), proxyInfo(0, 0, {}, 0)));
    QCOMPARE(Proxy::applicationProxy(), noProxy);
}

void TestKNetworkProxyMgr::writesNoSettings()
{
    const QByteArray lines = "[ProxyInfo]\nMode=5\nType=9\n";
    load(lines);
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(0, 0, {}, 0));
    KNetworkProxyMgr::release();
    QCOMPARE(Sandbox::readFile(AppEnv::accountIniPath()), lines);
}

void TestKNetworkProxyMgr::appliesWhatItIsGiven_data()
{
    QTest::addColumn<ProxyInfo>("info");
    QTest::addColumn<QNetworkProxy>("proxy");
    const QString ip = "10.0.0.1"_s;
    const auto row = [](const QString &name, const ProxyInfo &info, const Proxy &proxy) {
        QTest::newRow(qPrintable(name)) << info << proxy;
    };
    const QList<QPair<int, int>> outOfRange{{-1, 0}, {3, 0}, {0, -1}, {0, 3},
                                            {1, -1}, {2, 3}, {-7, 70}};
    for (const auto &[mode, type] : outOfRange)
        row("mode %1, type %2: nothing"_s.arg(mode).arg(type), proxyInfo(mode, type, ip, 80),
            proxyBefore);

    row("off"_s, withCredentials(proxyInfo(0, 0, ip, 80)), noProxy);
    row("HTTP"_s, proxyInfo(2, 0, ip, 80), {Proxy::HttpProxy, ip, 80});
    row("SOCKS4"_s, proxyInfo(2, 1, ip, 80), {Proxy::Socks5Proxy, ip, 80});
    row("SOCKS5"_s, proxyInfo(2, 2, ip, 80), {Proxy::Socks5Proxy, ip, 80});
    row("with credentials"_s, withCredentials(proxyInfo(2, 2, ip, 80)),
        {Proxy::Socks5Proxy, ip, 80, "robin"_s, "secret"_s});
    row("no server"_s, proxyInfo(2, 0, {}, 80), noProxy);

    for (const int port : {-2147483647, -1, 0, 65536, 70000, 2147483647})
        row("port %1"_s.arg(port), proxyInfo(2, 0, ip, port), noProxy);
    for (const int port : {1, 65535})
        row("port %1"_s.arg(port), proxyInfo(2, 0, ip, port),
            {Proxy::HttpProxy, ip, static_cast<quint16>(port)});

    // The host starts three characters behind the first colon.
    const QString host = "proxy.example"_s;
    const QList<QPair<QString, QString>> hosts{
        {host, host},
        {"http://"_s + host, host},
        {"socks4://"_s + host, host},
        {"socks5://"_s + host, host},
        {"HTTP://"_s + host, host},
        {"10.1.1.1:8080"_s, "80"_s},
        {"http://proxy.example:80"_s, "proxy.example:80"_s},
        {"::1"_s, {}},
        {"host:8"_s, {}},
        {"http://"_s, {}},
        {":"_s, {}},
    };
    for (const auto &[server, name] : hosts)
        row("server "_s + server, proxyInfo(2, 2, server, 80), {Proxy::Socks5Proxy, name, 80});
}

void TestKNetworkProxyMgr::appliesWhatItIsGiven()
{
    QFETCH(ProxyInfo, info);
    QFETCH(QNetworkProxy, proxy);
    KNetworkProxyMgr::instance()->setProxyInfo(info);
    QCOMPARE(Proxy::applicationProxy(), proxy);
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
    QVERIFY(isSame(KNetworkProxyMgr::instance()->proxyInfo(), info)); // kept as it is given
}

void TestKNetworkProxyMgr::usesTheSystemsConfiguration()
{
    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(1, 0, "10.0.0.1"_s, 80));
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    QVERIFY(Proxy::applicationProxy().hostName() != "10.0.0.1"_s);

    KNetworkProxyMgr::instance()->setProxyInfo(proxyInfo(0, 0, {}, 0));
    QVERIFY(!QNetworkProxyFactory::usesSystemConfiguration());
}

void TestKNetworkProxyMgr::answersAQuestionForCredentials()
{
    KNetworkProxyMgr *manager = KNetworkProxyMgr::instance();
    manager->setProxyInfo(withCredentials({}));
    QAuthenticator authenticator;
    manager->slotProxyAuthenticationRequired(proxyBefore, &authenticator);
    QCOMPARE(authenticator.user(), "robin"_s);
    QCOMPARE(authenticator.password(), "secret"_s);
    manager->slotProxyAuthenticationRequired(proxyBefore, nullptr);
}

void TestKNetworkProxyMgr::sendsRequestsThroughTheProxy()
{
    m_server->answer(m_link, Answer::ok("text"));
    KNetworkProxyMgr::instance()->setProxyInfo(serverAsProxy("http://"_s));
    KBaseTask task(m_manager.get(), m_link);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->paths(), {m_link});
}

void TestKNetworkProxyMgr::logsInToTheProxyWhenConnectedToAnAccessManager()
{
    m_server->answer(m_link,
                     {Answer::error(407).withHeader("Proxy-Authenticate", "Basic realm=\"proxy\""),
                      Answer::ok("text")});
    ProxyInfo info = serverAsProxy();
    KNetworkProxyMgr::instance()->setProxyInfo(info);
    // The proxy in use does not know the credentials, so they have to be asked for.
    info.mode = -1;
    KNetworkProxyMgr::instance()->setProxyInfo(withCredentials(info));

    connect(m_manager.get(), &QNetworkAccessManager::proxyAuthenticationRequired,
            KNetworkProxyMgr::instance(), &KNetworkProxyMgr::slotProxyAuthenticationRequired);
    KBaseTask task(m_manager.get(), m_link);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().constLast().headers.value("proxy-authorization"),
             "Basic " + QByteArray("robin:secret").toBase64());
}

void TestKNetworkProxyMgr::proxyThatKeepsAskingIsAFailure()
{
    m_server->answer(m_link,
                     Answer::error(407).withHeader("Proxy-Authenticate", "Basic realm=\"proxy\""));
    KNetworkProxyMgr::instance()->setProxyInfo(withCredentials(serverAsProxy()));
    KBaseTask task(Net::sharedAccessManager(), m_link); // as the program makes its requests
    task.start();
    task.waitForFinished(20000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed); // the time was not over
    QCOMPARE(m_server->requests().size(), 2);       // it was tried with the password, once
    QVERIFY(m_server->requests().constLast().headers.contains("proxy-authorization"));
}

QTEST_GUILESS_MAIN(TestKNetworkProxyMgr)
#include "test_knetworkproxymgr.moc"
