#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtNetwork/QNetworkRequest>

class QNetworkAccessManager;
class QNetworkReply;

/// One HTTP request in flight: a GET whose answer stays in memory. Derived tasks send something
/// else or put the answer elsewhere.
///
/// Either start it and wait for finished(), or start it and block in waitForFinished(). A task
/// runs once; it follows redirects itself, as many as there are. It lives on the thread of its
/// access manager, which it borrows and which must outlive it.
class KBaseTask : public QObject
{
    Q_OBJECT

public:
    enum Status : qint32 {
        TaskRunning = 0, ///< not finished, or not even started
        TaskSucceeded = 1,
        TaskFailed = 2,  ///< the reply reported an error, see errorString(), or is not whole, or
                         ///< is longer than it may be
        TaskAborted = 3, ///< by abort() or by a time-out
    };
    Q_ENUM(Status)

    KBaseTask(QNetworkAccessManager *manager, const QNetworkRequest &request);
    KBaseTask(QNetworkAccessManager *manager, const QString &url);
    ~KBaseTask() override;

    Q_DISABLE_COPY(KBaseTask)

    /// Makes an answer with a longer body a failed one, of which no more than this is ever held; to
    /// be called before start(). Without it there is no limit.
    void setMaxSize(qint64 bytes) { m_maxSize = bytes; }

    /// Issues the request. The answer arrives from the event loop, never within this call.
    void start();

    /// Runs an event loop until the task has finished or msec milliseconds have passed, which
    /// aborts it; 0 gives up on the next turn of the loop, a negative number waits without limit.
    /// Everything else that has events to handle goes on meanwhile.
    void waitForFinished(int msec);

    /// Ends a started task. finished() comes before this returns; a task that has already
    /// finished stays as it is.
    void abort();

    Status status() const { return m_status; }

    /// What has arrived of the body since the last call. The task must have been started, as for
    /// errorString().
    QByteArray readAll();

    QString errorString() const;

Q_SIGNALS:
    /// Bytes of the body so far, and in all: -1 while that is unknown.
    void progress(qint64 bytesRead, qint64 totalBytes);

    /// Once per task, with the final status() in place. The task may be destroyed from here.
    void finished();

public Q_SLOTS:
    void httpFinished();
    void httpReadyRead();
    void updateDataReadProgress(qint64 bytesRead, qint64 totalBytes);

protected:
    /// Sends request() through manager(). Called again, with the new address, for each redirect.
    virtual QNetworkReply *createReply();

    virtual void onAborted();
    virtual void onError();
    virtual void onRedirected();
    virtual void onSucceeded();
    virtual void onReadyRead();
    virtual void onProgress(qint64 bytesRead, qint64 totalBytes);

    QNetworkAccessManager *manager() const { return m_manager; }
    const QNetworkRequest &request() const { return m_request; }

    /// Whether all of an answer that ended without an error has arrived, and where it belongs. An
    /// answer that is not whole counts as failed.
    virtual bool isWhole();

private:
    bool isTooLong() const;
    void followRedirect(const QUrl &target);

    QNetworkAccessManager *const m_manager;
    QNetworkRequest m_request;
    QNetworkReply *m_reply = nullptr;
    bool m_aborted = false;
    Status m_status = TaskRunning;
    qint64 m_bytesRead = 0; ///< of the current reply
    qint64 m_maxSize = -1;  ///< -1: no limit
};
