#include "config/download/configdownloader.h"

#include "app/env/endpoints.h"
#include "config/content/configcontent.h"
#include "config/download/downloaditem.h"
#include "net/kbasetask.h"
#include "net/sharedaccessmanager.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonValue>
#include <QtCore/QTextStream>
#include <utility>

namespace {

constexpr int maxRunning = 5;
constexpr qint64 maxDocumentBytes = qint64(8) * 1024 * 1024;

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
    if (document.isNull() || document.isEmpty() || !collectImages(document.object())) {
        Q_EMIT finished();
        return;
    }

    QFile file(Config::configFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        Q_EMIT finished();
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << document.toJson();
    stream.flush();
    if (stream.status() != QTextStream::Ok || !file.flush()) {
        // A part of a document would be taken for the whole of it.
        file.close();
        file.remove();
        Q_EMIT finished();
        return;
    }

    checkItems();
}

bool ConfigDownloader::collectImages(const QJsonObject &document)
{
    const QString list = QStringLiteral("list");

    const QList<QJsonObject> categories = Config::jsonObjectList(document, QStringLiteral("apps"));
    for (const QJsonObject &category : categories) {
        const QList<QJsonObject> products = Config::jsonObjectList(category, list);
        for (const QJsonObject &product : products) {
            const QString link = Config::jsonString(product, QStringLiteral("icon"));
            const int number = product.value(QStringLiteral("pid")).toInt(-1);
            if (!link.isEmpty() && number >= 0)
                addItem(Config::productIconName(number, link), link);
        }
    }

    const QList<QJsonObject> options =
        Config::jsonObjectList(document.value(QStringLiteral("problem_type")).toObject(), list);
    for (const QJsonObject &option : options) {
        const QString link = Config::jsonString(option, QStringLiteral("banner_url"));
        const int number = option.value(QStringLiteral("value")).toInt(-1);
        if (!link.isEmpty() && number >= 0)
            addItem(Config::optionImageName(number, link), link);
    }
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
