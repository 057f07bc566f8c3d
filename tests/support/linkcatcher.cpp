#include "tests/support/linkcatcher.h"

#include <QtGui/QDesktopServices>

namespace {

const QLatin1String schemes[] = {QLatin1String("http"), QLatin1String("https"), QLatin1String()};

} // namespace

LinkCatcher::LinkCatcher()
{
    for (const QLatin1String &scheme : schemes)
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

LinkCatcher::~LinkCatcher()
{
    for (const QLatin1String &scheme : schemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

void LinkCatcher::open(const QUrl &link)
{
    m_links += link;
}
