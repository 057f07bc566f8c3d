#include "net/kposttask.h"

#include <QtNetwork/QNetworkAccessManager>

KPostTask::KPostTask(QNetworkAccessManager *manager, const QNetworkRequest &request,
                     const QByteArray &data)
    : KBaseTask(manager, request)
    , m_data(data)
{
}

KPostTask::KPostTask(QNetworkAccessManager *manager, const QString &url, const QByteArray &data)
    : KBaseTask(manager, url)
    , m_data(data)
{
}

QNetworkReply *KPostTask::createReply()
{
    return manager()->post(request(), m_data);
}
