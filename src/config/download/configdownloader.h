#pragma once

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <memory>

class DownloadItem;
class KBaseTask;

/// Fetches the current configuration document and the pictures that it refers to, into the
/// folders from which the pages read them. Whatever fails leaves the files of an earlier run in
/// place. There is no time limit here: the caller waits for as long as it may take and then calls
/// abort().
///
/// GUI thread; needs an event loop. May be destroyed at any time, also while requests run.
class ConfigDownloader : public QObject
{
    Q_OBJECT

public:
    explicit ConfigDownloader(QObject *parent = nullptr);
    ~ConfigDownloader() override;

    Q_DISABLE_COPY(ConfigDownloader)

    void start();

    /// Ends what is running. finished() does not come from it.
    void abort();

    /// Queues the pictures of a document. Returns whether the document offers any option; the
    /// pages cannot use one without.
    bool collectImages(const QJsonObject &document);

    /// Queues one picture. A link that is queued already is fetched once and saved under both
    /// names.
    void addItem(const QString &fileName, const QString &link);

Q_SIGNALS:
    /// The document and its pictures are dealt with, or the document could not be used. Comes once
    /// more when the last picture in the queue could not even be started.
    void finished();

public Q_SLOTS:
    void taskFinished();

    /// Forgets the items that are done and starts waiting ones, the last-queued first.
    void checkItems();

private:
    void removeItemAt(int index);

    std::unique_ptr<KBaseTask> m_task;
    QString m_link;
    QList<DownloadItem *> m_items; ///< waiting and running ones; all items are children of this
    QHash<QString, DownloadItem *> m_queued; ///< the same by their links
};
