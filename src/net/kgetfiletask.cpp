#include "net/kgetfiletask.h"

#include "app/env/appenv.h"

#include <QtNetwork/QNetworkReply>

namespace {

// A body that comes faster than the disk takes it waits with its sender, not in memory.
constexpr qint64 bufferBytes = qint64(1) << 20;

} // namespace

bool KGetFileTask::setFile(const QString &path, QString &error)
{
    m_file.setFileName(path);
    if (!AppEnv::isSpecialFile(path) && m_file.open(QIODevice::WriteOnly))
        return true;
    error = m_file.errorString();
    return false;
}

QNetworkReply *KGetFileTask::createReply()
{
    QNetworkReply *reply = KBaseTask::createReply();
    reply->setReadBufferSize(bufferBytes);
    return reply;
}

void KGetFileTask::onAborted()
{
    m_file.close();
    m_file.remove();
}

void KGetFileTask::onError()
{
    m_file.flush();
    m_file.close();
    m_file.remove();
}

void KGetFileTask::onRedirected()
{
    // What has been written is the body of the redirecting answer.
    m_file.flush();
    m_file.close();
    m_hasWriteError = !m_file.open(QIODevice::WriteOnly);
    m_file.resize(0);
}

void KGetFileTask::onSucceeded()
{
    m_file.flush();
    m_file.close();
}

void KGetFileTask::onReadyRead()
{
    const QByteArray bytes = readAll();
    if (m_file.write(bytes) != bytes.size())
        m_hasWriteError = true;
}

bool KGetFileTask::isWhole()
{
    // A full disk may show only now.
    return KBaseTask::isWhole() && m_file.flush() && !m_hasWriteError;
}
