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
    }
    Q_EMIT finished();
}

void DownloadItem::saveAs(const QString &name) const
{
    // The last name, mostly the only one, takes the file itself: QFile::copy() waits for the disk.
    QString whole = temporaryFile();
    if (name != m_fileNames.constLast()) {
        // The disk may have no room for a copy: the earlier picture goes when this one is there.
        const QString copy = whole + QStringLiteral("copy");
        QFile::remove(copy);
        if (!QFile::copy(whole, copy))
            return;
        whole = copy;
    }
    if (!QFile::exists(whole))
        return;
    const QString fileName = Config::imagesDir() + QLatin1Char('/') + name;
    QFile::remove(fileName);
    if (!QFile::rename(whole, fileName))
        QFile::remove(whole);
}

QString DownloadItem::temporaryFile() const
{
    return Config::imagesDir() + QLatin1Char('/') + m_fileNames.constFirst() +
           QStringLiteral(".~tmp");
}
