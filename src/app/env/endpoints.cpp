#include "app/env/endpoints.h"

namespace Endpoints {

QString configuration()
{
    return QStringLiteral(CLIPWRIGHT_CONFIG_ENDPOINT);
}

QString redirect()
{
    return QStringLiteral(CLIPWRIGHT_REDIRECT_ENDPOINT);
}

} // namespace Endpoints
