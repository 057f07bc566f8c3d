#include "net/sharedaccessmanager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkRequest>

namespace {

/// Speaks HTTP and nothing else. What a document or a redirect names must not be a file of this
/// machine, or of another that would be shown this user's credentials.
class HttpAccessManager : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *data) override
    {
        const QString scheme = request.url().scheme();
        if (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
            return QNetworkAccessManager::createRequest(operation, request, data);
        // Ends as an unknown protocol does.
        return QNetworkAccessManager::createRequest(operation, QNetworkRequest(), data);
    }
};

} // namespace

namespace Net {

QNetworkAccessManager *sharedAccessManager()
{
    // A static object would outlive the application object, whose event loop its replies need.
    static QPointer<QNetworkAccessManager> manager;
    if (!manager)
        manager = new HttpAccessManager(QCoreApplication::instance());
    return manager;
}

} // namespace Net
