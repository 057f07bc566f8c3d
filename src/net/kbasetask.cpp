#include "net/kbasetask.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QSslConfiguration>

namespace {

/// The framework's default begins with TLS 1.0.
void refuseOldTls(QNetworkRequest &request)
{
    QSslConfiguration configuration = request.sslConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    request.setSslConfiguration(configuration);
}

} // namespace

KBaseTask::KBaseTask(QNetworkAccessManager *manager, const QNetworkRequest &request)
    : m_manager(manager)
    , m_request(request)
{
}

KBaseTask::KBaseTask(QNetworkAccessManager *manager, const QString &url)
    : KBaseTask(manager, QNetworkRequest(QUrl(url)))
{
}

KBaseTask::~KBaseTask()
{
    // The reply may be the one whose signal is being handled.
    if (m_reply)
        m_reply->deleteLater();
}

void KBaseTask::start()
{
    if (m_request.url().scheme() == QLatin1String("https"))
        refuseOldTls(m_request);
    m_reply = createReply();
    m_bytesRead = 0;
    // Do not let the framework buffer more of a body than is needed to see that it is too long.
    const qint64 buffer = m_reply->readBufferSize();
    if (m_maxSize >= 0 && (buffer == 0 || buffer > m_maxSize))
        m_reply->setReadBufferSize(m_maxSize + 1);
    connect(m_reply, &QNetworkReply::finished, this, &KBaseTask::httpFinished);
    connect(m_reply, &QNetworkReply::readyRead, this, &KBaseTask::httpReadyRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &KBaseTask::updateDataReadProgress);
}

void KBaseTask::waitForFinished(int msec)
{
    const bool limited = msec >= 0;
    QEventLoop loop;
    connect(this, &KBaseTask::finished, &loop, &QEventLoop::quit);
    QTimer timer;
    if (limited) {
        connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
        timer.setSingleShot(true);
        timer.start(msec);
    }
    loop.exec();

    if (!limited)
        return;
    if (timer.isActive())
        timer.stop();
    else
        abort();
}

void KBaseTask::abort()
{
    m_aborted = true;
    m_reply->abort();
}

QByteArray KBaseTask::readAll()
{
    QByteArray bytes = m_reply->readAll();
    m_bytesRead += bytes.size();
    return bytes;
}

QString KBaseTask::errorString() const
{
    return m_reply->errorString();
}

void KBaseTask::httpFinished()
{
    if (m_aborted) {
        onAborted();
        m_status = TaskAborted;
        Q_EMIT finished();
        return;
    }

    const QVariant target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
    const bool hasError = m_reply->error() != QNetworkReply::NoError;
    if (!hasError && !target.isNull()) {
        followRedirect(target.toUrl());
    } else if (hasError || isTooLong() || !isWhole()) {
        onError();
        m_status = TaskFailed;
        Q_EMIT finished();
    } else {
        onSucceeded();
        m_status = TaskSucceeded;
        Q_EMIT finished();
    }
}

void KBaseTask::httpReadyRead()
{
    if (isTooLong())
        m_reply->abort(); // which is an error of the reply, not an abort by the task's owner
    else
        onReadyRead();
}

void KBaseTask::updateDataReadProgress(qint64 bytesRead, qint64 totalBytes)
{
    onProgress(bytesRead, totalBytes);
}

QNetworkReply *KBaseTask::createReply()
{
    return m_manager->get(m_request);
}

void KBaseTask::onAborted() {}

void KBaseTask::onError() {}

void KBaseTask::onRedirected() {}

void KBaseTask::onSucceeded() {}

void KBaseTask::onReadyRead() {}

void KBaseTask::onProgress(qint64 bytesRead, qint64 totalBytes)
{
    Q_EMIT progress(bytesRead, totalBytes);
}

bool KBaseTask::isTooLong() const
{
    return m_maxSize >= 0 && m_bytesRead + m_reply->bytesAvailable() > m_maxSize;
}

void KBaseTask::followRedirect(const QUrl &target)
{
    onRedirected();
    m_request.setUrl(m_request.url().resolved(target));
    m_reply->deleteLater();
    start();
}

/// A connection that is lost in the middle of a large body is, now and then, not reported as an
/// error. No length is known of a compressed body.
bool KBaseTask::isWhole()
{
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    return !length.isValid() || m_bytesRead + m_reply->bytesAvailable() >= length.toLongLong();
}
