#include "net/kgetfiletask.h"

bool KGetFileTask::setFile(const QString &path, QString &error)
{
    m_file.setFileName(path);
    if (m_file.open(QIODevice::WriteOnly))
        return true;
    error = m_file.errorString();
    return false;
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
