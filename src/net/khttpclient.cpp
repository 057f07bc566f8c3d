#include "net/khttpclient.h"

#include "net/kgetfiletask.h"
#include "net/kposttask.h"

#include <QtCore/QEventLoop>
#include <QtCore/QUrl>

namespace {

KBaseTask::Status run(KBaseTask &task, QByteArray &data, QString &error, int msec)
{
    task.start();
    task.waitForFinished(msec);
    if (task.status() == KBaseTask::TaskSucceeded)
        data = task.readAll();
    else if (task.status() == KBaseTask::TaskFailed)
        error = task.errorString();
    return task.status();
}

} // namespace

KHttpClient::KHttpClient(QObject *parent)
    : QObject(parent)
{
}

KBaseTask::Status KHttpClient::get(const QNetworkRequest &request, QByteArray &data, QString &error,
                                   int msec)
{
    KBaseTask task(&m_manager, request);
    return run(task, data, error, msec);
}

KBaseTask::Status KHttpClient::get(const QString &url, QByteArray &data, QString &error, int msec)
{
    return get(QNetworkRequest(QUrl(url)), data, error, msec);
}

KBaseTask::Status KHttpClient::getFile(const QNetworkRequest &request, const QString &filePath,
                                       QString &error, int msec)
{
    Q_UNUSED(msec)
    KGetFileTask task(&m_manager, request);
    if (!task.setFile(filePath, error))
        return KBaseTask::TaskFailed;

    QEventLoop loop;
    connect(&task, &KBaseTask::finished, &loop, &QEventLoop::quit);
    task.start();
    loop.exec();

    if (task.status() == KBaseTask::TaskFailed)
        error = task.errorString();
    return task.status();
}

KBaseTask::Status KHttpClient::getFile(const QString &url, const QString &filePath, QString &error,
                                       int msec)
{
    return getFile(QNetworkRequest(QUrl(url)), filePath, error, msec);
}

KBaseTask::Status KHttpClient::post(const QNetworkRequest &request, const QByteArray &body,
                                    QByteArray &data, QString &error, int msec)
{
    QNetworkRequest typedRequest = request;
    if (!typedRequest.hasRawHeader("Content-Type")) {
        typedRequest.setRawHeader("Content-Type", "application/x-www-form-urlencoded");
    }
    KPostTask task(&m_manager, typedRequest, body);
    return run(task, data, error, msec);
}

KBaseTask::Status KHttpClient::post(const QString &url, const QByteArray &body, QByteArray &data,
                                    QString &error, int msec)
{
    return post(QNetworkRequest(QUrl(url)), body, data, error, msec);
}
