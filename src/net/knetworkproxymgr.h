#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

class QAuthenticator;
class QNetworkProxy;

/// The proxy as the user configured it in the product.
struct ProxyInfo
{
    enum Mode : qint32 { NoProxy = 0, SystemProxy = 1, ManualProxy = 2 };
    enum Type : qint32 { Http = 0, Socks4 = 1, Socks5 = 2 };

    qint32 mode = -1; ///< a Mode; -1 until something is loaded or set
    qint32 type = Socks5;
    qint32 port = 0;
    QString server; ///< host, with or without "http://", "socks4://" or "socks5://" before it
    QString user;
    QString password; ///< plain text, as the product stores it

    QString reserved1; ///< carried by the product's record; no use here
    QString reserved2;
};

/// Turns the product's proxy settings into the proxy of every request of this process. Bad
/// settings are never reported: they mean no proxy. GUI thread only.
class KNetworkProxyMgr : public QObject
{
    Q_OBJECT

public:
    /// The only manager, made on first use; it changes nothing until settings are loaded or set.
    static KNetworkProxyMgr *instance();

    /// Deletes the manager. The proxy stays as it was applied.
    static void release();

    /// Reads the account's settings and applies them; out of range, mode and type are clamped.
    void loadSettings();

    ProxyInfo proxyInfo() const { return m_proxyInfo; }

    /// Keeps the record as given and applies it; out of range, mode or type make it apply nothing.
    void setProxyInfo(const ProxyInfo &proxyInfo);

public Q_SLOTS:
    /// Answers an access manager's question for the proxy's credentials.
    void slotProxyAuthenticationRequired(const QNetworkProxy &proxy, QAuthenticator *authenticator);

private:
    KNetworkProxyMgr() = default;

    void apply() const;

    ProxyInfo m_proxyInfo;
};
