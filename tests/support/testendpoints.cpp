#include "tests/support/testendpoints.h"

#include "app/env/endpoints.h"

namespace {

QString &configurationEndpoint()
{
    static QString endpoint = QStringLiteral("http://configuration.invalid");
    return endpoint;
}

QString &redirectEndpoint()
{
    static QString endpoint = QStringLiteral("http://redirect.invalid");
    return endpoint;
}

} // namespace

namespace Endpoints {

QString configuration()
{
    return configurationEndpoint();
}

QString redirect()
{
    return redirectEndpoint();
}

} // namespace Endpoints

namespace TestEndpoints {

void setConfiguration(const QString &endpoint)
{
    configurationEndpoint() = endpoint;
}

void setRedirect(const QString &endpoint)
{
    redirectEndpoint() = endpoint;
}

} // namespace TestEndpoints
