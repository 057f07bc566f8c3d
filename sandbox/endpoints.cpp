// The sandbox flavour's hosts: a local service whose address is in an environment variable. The
// program as shipped does not link this file.

#include "app/env/endpoints.h"

namespace {

QString service()
{
    return qEnvironmentVariable("CLIPWRIGHT_SANDBOX_SERVICE", QStringLiteral("http://127.0.0.1:9"));
}

} // namespace

namespace Endpoints {

QString configuration()
{
    return service();
}

QString redirect()
{
    return service();
}

} // namespace Endpoints
