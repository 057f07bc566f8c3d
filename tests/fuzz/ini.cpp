// The product's two ini files, on their way to the proxy, the languages and the environment. The
// same bytes stand in both.

#include "app/env/appenv.h"
#include "app/env/languages.h"
#include "config/content/configcontent.h"
#include "net/knetworkproxymgr.h"
#include "tests/fuzz/target.h"
#include "tests/support/sandbox.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtNetwork/QNetworkProxy>

namespace {

const Sandbox *sandbox;

void requireRightProxy()
{
    const ProxyInfo info = KNetworkProxyMgr::instance()->proxyInfo();
    Fuzz::require(info.mode >= 0 && info.mode <= 2 && info.type >= 0 && info.type <= 2,
                  "mode and type are within their ranges");
    const QNetworkProxy proxy = QNetworkProxy::applicationProxy();
    if (info.mode != ProxyInfo::ManualProxy)
        return;
    const bool isUsable = !info.server.isEmpty() && info.port > 0 && info.port < 65536;
    Fuzz::require(isUsable == (proxy.type() != QNetworkProxy::NoProxy),
                  "a manual proxy is one with a server and a port");
    Fuzz::require(!isUsable || proxy.port() == info.port, "the port is the one of the file");
}

} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    new QCoreApplication(*argc, *argv);
    sandbox = new Sandbox(Sandbox::Content::Nothing);
    qAddPostRoutine([] { delete sandbox; });
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Another folder each time: files that were read are remembered by their names.
    static int count = 0;
    const QString folder = QStringLiteral("ProgramData%1").arg(++count);
    const QByteArray content = Fuzz::bytes(data, size);
    for (const char *name : {"Clipwright.ini", "KConfig.ini"})
        sandbox->writeFile(folder + QStringLiteral("/Norvane Clipwright/") + QLatin1String(name),
                           content);
    qputenv("ProgramData", QFile::encodeName(sandbox->path(folder)));

    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    AppEnv::readAccountInfo();
    Fuzz::require(QFile::decodeName(qgetenv("ProgramData")) == sandbox->path(folder),
                  "reading changes nothing around it");
    Fuzz::require(Languages::toLanguageCode(product.language).size() == 2 &&
                      Config::configLanguageCode().size() == 2,
                  "every language has a code of two letters");
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    KNetworkProxyMgr::instance()->loadSettings();
    requireRightProxy();

    QDir(sandbox->path(folder)).removeRecursively();
    return 0;
}
