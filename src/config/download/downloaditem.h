#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <memory>

class KGetFileTask;

/// The download of one picture, saved in the picture folder under one or more names. It waits
/// until start(), then runs, then is done.
///
/// A picture that is already there is replaced only by a copy that has arrived whole.
class DownloadItem : public QObject
{
    Q_OBJECT

public:
    enum class State { Waiting, Running, Done };

    /// fileNames has at least one name; the first names the temporary file as well.
    DownloadItem(QObject *parent, const QStringList &fileNames, const QString &link);
    ~DownloadItem() override;

    Q_DISABLE_COPY(DownloadItem)

    /// Returns false when the temporary file cannot be written. Nothing is requested then,
    /// finished() will not come, and the item is of no further use.
    bool start();

    /// Ends a running download; finished() does not come. Does nothing to a waiting one.
    void abort();

    /// Saves the picture under this name too.
    void addFileName(const QString &fileName);

    State state() const;
    const QStringList &fileNames() const { return m_fileNames; }
    const QString &link() const { return m_link; }

Q_SIGNALS:
    /// The download has succeeded or failed.
    void finished();

public Q_SLOTS:
    void taskFinished();

private:
    void saveAs(const QString &name) const;
    QString temporaryFile() const;

    std::unique_ptr<KGetFileTask> m_task;
    QStringList m_fileNames;
    const QString m_link;
};
