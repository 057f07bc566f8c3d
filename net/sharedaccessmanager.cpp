#include "net/sharedaccessmanager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtNetwork/QNetworkAccessManager>

namespace Net {

QNetworkAccessManager *sharedAccessManager()
{
    // A static object would outlive the application object, whose event loop its replies need.
    static QPointer<QNetworkAccessManager> manager;
    if (!manager)
        manager = new QNetworkAccessManager(QCoreApplication::instance());
    return manager;
}

} // namespace Net
