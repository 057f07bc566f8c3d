#include "config/download/configdownloader.h"

#include "app/env/appenv.h"
#include "app/env/endpoints.h"
#include "config/content/configcontent.h"
#include "config/download/downloaditem.h"
#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QTextStream>
#include <utility>

namespace {

constexpr int maxRunning = 5;
constexpr qint64 maxDocumentBytes = qint64(8) * 1024 * 1024;

QByteArray readFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QByteArray &bytes, QFile &file)
{
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << bytes;
    stream.flush();
    return stream.status() == QTextStream::Ok;
}

/// Over what is there, so that bytes which already have room on a full disk keep it.
bool putBack(const QByteArray &bytes, const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadWrite) && file.write(bytes) == bytes.size() && file.flush() &&
           file.resize(bytes.size());
}

/// On a full disk the earlier document stays. A part of one is never left behind: it would be
/// taken for the whole, and the built-in document would not be used.
bool save(const QJsonDocument &document, const QString &fileName)
{
    if (AppEnv::isSpecialFile(fileName))
        return false;
    const QByteArray earlier = readFile(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    if (write(document.toJson(), file))
        return true;
    file.close();
    if (earlier.isEmpty() || !putBack(earlier, fileName))
        QFile::remove(fileName);
    return false;
}

} // namespace

ConfigDownloader::ConfigDownloader(QObject *parent)
    : QObject(parent)
{
}

ConfigDownloader::~ConfigDownloader() = default;

void ConfigDownloader::start()
{
    m_link = Endpoints::configuration() +
             QStringLiteral("/uninstall/cfg/v1/%1-%2.json")
                 .arg(Config::configProductId(), Config::configLanguageCode());
    m_task = std::make_unique<KBaseTask>(Net::sharedAccessManager(), m_link);
    m_task->setMaxSize(maxDocumentBytes);
    m_task->start();
    connect(m_task.get(), &KBaseTask::finished, this, &ConfigDownloader::taskFinished);
}

void ConfigDownloader::abort()
{
    if (m_task)
        m_task->abort();
    for (DownloadItem *item : std::as_const(m_items))
        item->abort();
}

void ConfigDownloader::taskFinished()
{
    qDebug() << "configuration" << m_link << "ended with" << m_task->status();
    if (m_task->status() == KBaseTask::TaskFailed) {
        Q_EMIT finished();
        return;
    }
    if (m_task->status() == KBaseTask::TaskAborted)
        return;

    const QJsonDocument document = QJsonDocument::fromJson(m_task->readAll());
    // What is no document, or an empty one, has no options either.
    if (!collectImages(document.object()) || !save(document, Config::configFilePath())) {
        Q_EMIT finished();
        return;
    }
    checkItems();
}

bool ConfigDownloader::collectImages(const QJsonObject &document)
{
    const QString list = QStringLiteral("list");
    const auto collect = [this](const Config::Picture &picture) {
        if (!picture.link.isEmpty())
            addItem(picture.fileName, picture.link);
    };

    const QList<QJsonObject> categories = Config::jsonObjectList(document, QStringLiteral("apps"));
    for (const QJsonObject &category : categories) {
        const QList<QJsonObject> products = Config::jsonObjectList(category, list);
        for (const QJsonObject &product : products)
            collect(Config::productPicture(product));
    }

    const QList<QJsonObject> options =
        Config::jsonObjectList(document.value(QStringLiteral("problem_type")).toObject(), list);
    for (const QJsonObject &option : options)
        collect(Config::optionPicture(option));
    return !options.isEmpty();
}

void ConfigDownloader::addItem(const QString &fileName, const QString &link)
{
    // The system would cut the temporary file's name there, and leave another picture's.
    if (fileName.contains(QChar::Null))
        return;
    if (DownloadItem *known = m_queued.value(link)) {
        known->addFileName(fileName);
        return;
    }
    auto *item = new DownloadItem(this, {fileName}, link);
    connect(item, &DownloadItem::finished, this, &ConfigDownloader::checkItems);
    m_items.append(item);
    m_queued.insert(link, item);
}

void ConfigDownloader::removeItemAt(int index)
{
    m_queued.remove(m_items.at(index)->link());
    m_items.removeAt(index);
}

void ConfigDownloader::checkItems()
{
    QStringList targets; // of the running ones
    for (int i = m_items.size() - 1; i >= 0; --i) {
        if (m_items.at(i)->state() == DownloadItem::State::Running)
            targets += m_items.at(i)->fileNames().constFirst();
        else if (m_items.at(i)->state() == DownloadItem::State::Done)
            removeItemAt(i);
    }

    for (int i = m_items.size() - 1; i >= 0 && targets.size() < maxRunning; --i) {
        const QString target = m_items.at(i)->fileNames().constFirst();
        // Two links under one name would write into one temporary file, and some systems do not
        // tell small letters from capitals.
        if (m_items.at(i)->state() != DownloadItem::State::Waiting ||
            targets.contains(target, Qt::CaseInsensitive))
            continue;
        if (!m_items.at(i)->start()) {
            removeItemAt(i);
            // From the event queue, so that no walk over the list runs inside another.
            QMetaObject::invokeMethod(this, "checkItems", Qt::QueuedConnection);
            break;
        }
        targets += target;
    }

    if (m_items.isEmpty())
        Q_EMIT finished();
}
