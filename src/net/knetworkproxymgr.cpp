#include "net/knetworkproxymgr.h"

#include "app/env/appenv.h"

#include <QtCore/QSettings>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkProxyFactory>

namespace {

KNetworkProxyMgr *theInstance = nullptr;

constexpr qint32 maxPort = 65535;

bool isWithin0To2(qint32 number)
{
    return number >= 0 && number <= 2;
}

/// The host begins three characters from the first colon, behind the "://" of a scheme. Of a host
/// with a port behind it little is left, by the same rule: the port has a key of its own.
QString hostName(const QString &server)
{
    const int colon = server.indexOf(QLatin1Char(':'));
    return colon < 0 ? server : server.mid(colon + 3);
}

QNetworkProxy manualProxy(const ProxyInfo &info)
{
    if (info.server.isEmpty() || info.port < 1 || info.port > maxPort)
        return QNetworkProxy(QNetworkProxy::NoProxy);
    // There is no SOCKS4 client; servers of that kind commonly speak SOCKS5 as well.
    const auto type =
        info.type == ProxyInfo::Http ? QNetworkProxy::HttpProxy : QNetworkProxy::Socks5Proxy;
    return QNetworkProxy(type, hostName(info.server), static_cast<quint16>(info.port), info.user,
                         info.password);
}

} // namespace

KNetworkProxyMgr *KNetworkProxyMgr::instance()
{
    if (!theInstance)
        theInstance = new KNetworkProxyMgr;
    return theInstance;
}

void KNetworkProxyMgr::release()
{
    delete theInstance;
    theInstance = nullptr;
}

void KNetworkProxyMgr::loadSettings()
{
    QSettings ini(AppEnv::accountIniPath(), QSettings::IniFormat);
    ini.beginGroup(QStringLiteral("ProxyInfo"));
    m_proxyInfo.mode = qBound(0, ini.value(QStringLiteral("Mode"), 0).toInt(), 2);
    m_proxyInfo.type = qBound(0, ini.value(QStringLiteral("Type"), 0).toInt(), 2);
    m_proxyInfo.server = ini.value(QStringLiteral("Server")).toString();
    m_proxyInfo.port = ini.value(QStringLiteral("Port"), 0).toInt();
    m_proxyInfo.user = ini.value(QStringLiteral("User")).toString();
    m_proxyInfo.password = ini.value(QStringLiteral("Password")).toString();
    apply();
}

void KNetworkProxyMgr::setProxyInfo(const ProxyInfo &proxyInfo)
{
    m_proxyInfo = proxyInfo;
    apply();
}

void KNetworkProxyMgr::slotProxyAuthenticationRequired(const QNetworkProxy &proxy,
                                                       QAuthenticator *authenticator)
{
    Q_UNUSED(proxy)
    if (!authenticator)
        return;
    authenticator->setUser(m_proxyInfo.user);
    authenticator->setPassword(m_proxyInfo.password);
}

void KNetworkProxyMgr::apply() const
{
    if (!isWithin0To2(m_proxyInfo.mode) || !isWithin0To2(m_proxyInfo.type))
        return;
    switch (m_proxyInfo.mode) {
    case ProxyInfo::NoProxy:
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        break;
    case ProxyInfo::SystemProxy:
        QNetworkProxyFactory::setUseSystemConfiguration(true);
        break;
    case ProxyInfo::ManualProxy:
        QNetworkProxy::setApplicationProxy(manualProxy(m_proxyInfo));
        break;
    }
}
