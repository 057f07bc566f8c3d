#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"
#include "platform/machineinfo.h"
#include "tests/unit/net/nettest.h"

#include <QtNetwork/QHostInfo>
#include <QtNetwork/QNetworkProxy>

/// Servers and proxies that ask for a logon get none but the proxy's own, as the settings have it.
class TestCredentials : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void serverGetsNone_data() { schemes(); }
    void serverGetsNone();
    void serverOfARedirectGetsNone_data() { schemes(); }
    void serverOfARedirectGetsNone();
    void proxyGetsNone_data() { schemes(); }
    void proxyGetsNone();
    void proxyOfATunnelGetsNone_data() { schemes(); }
    void proxyOfATunnelGetsNone();
    void proxyGetsItsOwnAndNothingElse_data() { schemes(); }
    void proxyGetsItsOwnAndNothingElse();
    void tunnelGetsItsOwnAndNothingElse_data() { schemes(); }
    void tunnelGetsItsOwnAndNothingElse();

private:
    static void schemes();
    /// What asks: the scheme first, then, as a server of NTLM does, its challenge, then no more.
    static QVector<Answer> asking(int code, const QByteArray &header);
    void setProxy(const QString &user = {}) const;
    void fetch(const QString &link);
    QList<QByteArray> credentials() const;
    /// Nothing that was sent names the account, the machine or its domain.
    void judge() const;
};

namespace {

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

/// The second message of the NTLM protocol, of a domain that asks for everything.
QByteArray ntlmChallenge()
{
    const QByteArray domain = utf16("DOMAIN"_s);
    QByteArray message("NTLMSSP\0\2\0\0\0", 12);
    message += QByteArray::fromHex("0c000c0038000000" // the domain's name: length, place
                                   "050289a2"         // Unicode, NTLM, target information
                                   "0123456789abcdef0000000000000000"
                                   "1400140044000000" // target information: length, place
                                   "0a0000000000000f");
    message += domain;
    message += QByteArray::fromHex("02000c00") + domain + QByteArray(4, '\0');
    return message.toBase64();
}

QStringList secrets()
{
    QStringList names{Platform::computerName(), QHostInfo::localHostName(),
                      QHostInfo::localDomainName()};
    for (const char *variable : {"USER", "USERNAME", "LOGNAME", "USERDOMAIN", "COMPUTERNAME"})
        names += qEnvironmentVariable(variable);
    names.removeAll({});
    names.removeDuplicates();
    return names;
}

/// Whether a header names somebody or something: NTLM in UTF-16, Basic as the user, Digest in
/// quotes.
bool names(const QByteArray &header, const QString &name)
{
    const QByteArray decoded = QByteArray::fromBase64(header.mid(header.indexOf(' ') + 1));
    if (header.startsWith("NTLM ") || header.startsWith("Negotiate "))
        return decoded.toUpper().contains(utf16(name.toUpper()));
    if (header.startsWith("Basic "))
        return decoded.startsWith(name.toUtf8() + ':');
    return header.contains('"' + name.toUtf8() + '"');
}

} // namespace

void TestCredentials::schemes()
{
    QTest::addColumn<QByteArray>("scheme");
    for (const char *scheme : {"NTLM", "Negotiate", "Basic realm=\"a\"",
                               "Digest realm=\"a\", nonce=\"b\", qop=\"auth\""})
        QTest::newRow(scheme) << QByteArray(scheme);
}

QVector<Answer> TestCredentials::asking(int code, const QByteArray &header)
{
    QFETCH(QByteArray, scheme);
    const bool hasChallenge = scheme == "NTLM" || scheme == "Negotiate";
    const QByteArray second = hasChallenge ? scheme + ' ' + ntlmChallenge() : scheme;
    return {Answer::error(code, "log on").withHeader(header, scheme),
            Answer::error(code, "log on").withHeader(header, second), Answer::error(403, "no")};
}

void TestCredentials::init()
{
    NetTest::init();
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    Net::sharedAccessManager()->clearAccessCache();
}

void TestCredentials::cleanup()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    NetTest::cleanup();
}

void TestCredentials::setProxy(const QString &user) const
{
    const QUrl address(m_server->url());
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, address.host(),
                                                     static_cast<quint16>(address.port()), user,
                                                     user.isEmpty() ? QString() : "secret"_s));
}

void TestCredentials::fetch(const QString &link)
{
    KBaseTask task(Net::sharedAccessManager(), link);
    task.start();
    task.waitForFinished(20000);
    QCOMPARE(task.status(), KBaseTask::TaskFailed); // the time was not over
    QVERIFY(!m_server->requests().isEmpty());
}

QList<QByteArray> TestCredentials::credentials() const
{
    QList<QByteArray> credentials;
    for (const ScriptedServer::Request &request : m_server->requests()) {
        for (const char *header : {"authorization", "proxy-authorization"}) {
            if (request.headers.contains(header))
                credentials += request.headers.value(header);
        }
    }
    return credentials;
}

void TestCredentials::judge() const
{
    const QList<QByteArray> all = credentials();
    for (const QByteArray &header : all) {
        const QStringList secret = secrets();
        for (const QString &name : secret)
            QVERIFY2(!names(header, name), qPrintable(name));
    }
}

void TestCredentials::serverGetsNone()
{
    m_server->answer("/a"_s, asking(401, "WWW-Authenticate"));
    fetch(url());
    judge();
}

void TestCredentials::serverOfARedirectGetsNone()
{
    m_server->answer("/a"_s, Answer::redirect(url("/b"_s)));
    m_server->answer("/b"_s, asking(401, "WWW-Authenticate"));
    fetch(url());
    QCOMPARE(m_server->paths().value(1), "/b"_s);
    judge();
}

void TestCredentials::proxyGetsNone()
{
    setProxy();
    const QString link = "http://nowhere.invalid/a"_s;
    m_server->answer(link, asking(407, "Proxy-Authenticate"));
    fetch(link);
    judge();
}

void TestCredentials::proxyOfATunnelGetsNone()
{
    setProxy();
    m_server->answer("nowhere.invalid:443"_s, asking(407, "Proxy-Authenticate"));
    fetch("https://nowhere.invalid/a"_s);
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("CONNECT"));
    judge();
}

void TestCredentials::proxyGetsItsOwnAndNothingElse()
{
    setProxy("robin"_s);
    const QString link = "http://nowhere.invalid/a"_s;
    m_server->answer(link, asking(407, "Proxy-Authenticate"));
    fetch(link);
    judge();
    const QList<QByteArray> all = credentials();
    if (!all.isEmpty()) // that a name would be found
        QVERIFY(names(all.constLast(), "robin"_s));
}

void TestCredentials::tunnelGetsItsOwnAndNothingElse()
{
    setProxy("robin"_s);
    m_server->answer("nowhere.invalid:443"_s, asking(407, "Proxy-Authenticate"));
    fetch("https://nowhere.invalid/a"_s);
    judge();
}

QTEST_GUILESS_MAIN(TestCredentials)
#include "test_credentials.moc"
