#include "config/download/downloaditem.h"

#include "config/content/configcontent.h"
#include "net/kgetfiletask.h"
#include "net/sharedaccessmanager.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <utility>

namespace {

constexpr qint64 maxPictureBytes = qint64(16) * 1024 * 1024;

} // namespace

DownloadItem::DownloadItem(QObject *parent, const QStringList &fileNames, const QString &link)
    : QObject(parent)
    , m_fileNames(fileNames)
    , m_link(link)
{
}

DownloadItem::~DownloadItem() = default;

bool DownloadItem::start()
{
    m_task = std::make_unique<KGetFileTask>(Net::sharedAccessManager(), m_link);
    QString error;
    if (!m_task->setFile(temporaryFile(), error))
        return false;
    m_task->setMaxSize(maxPictureBytes);
    m_task->start();
    connect(m_task.get(), &KBaseTask::finished, this, &DownloadItem::taskFinished);
    return true;
}

void DownloadItem::abort()
{
    if (state() == State::Running)
        m_task->abort();
}

void DownloadItem::addFileName(const QString &fileName)
{
    if (!m_fileNames.contains(fileName))
        m_fileNames.append(fileName);
}

DownloadItem::State DownloadItem::state() const
{
    if (!m_task)
        return State::Waiting;
    return m_task->status() == KBaseTask::TaskRunning ? State::Running : State::Done;
}

void DownloadItem::taskFinished()
{
    qDebug() << "picture" << m_link << "ended with" << m_task->status();
    if (m_task->status() == KBaseTask::TaskAborted)
        return;
    if (m_task->status() != KBaseTask::TaskFailed) {
        for (const QString &name : std::as_const(m_fileNames))
            saveAs(name);
        QFile::remove(temporaryFile());
    }
    Q_EMIT finished();
}

void DownloadItem::saveAs(const QString &name) const
{
    const QString fileName = Config::imagesDir() + QLatin1Char('/') + name;
    // The disk may have no room for another copy: the earlier picture goes when this one is there.
    const QString copy = temporaryFile() + QStringLiteral("copy");
    QFile::remove(copy);
    if (!QFile::copy(temporaryFile(), copy))
        return;
    QFile::remove(fileName);
    if (!QFile::rename(copy, fileName))
        QFile::remove(copy);
}

QString DownloadItem::temporaryFile() const
{
    return Config::imagesDir() + QLatin1Char('/') + m_fileNames.constFirst() +
           QStringLiteral(".~tmp");
}
