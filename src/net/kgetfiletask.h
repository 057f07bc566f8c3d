#pragma once

#include "net/kbasetask.h"

#include <QtCore/QFile>

/// A GET whose answer goes into a file as it arrives. The file stays only when the task succeeds.
class KGetFileTask : public KBaseTask
{
    Q_OBJECT

public:
    using KBaseTask::KBaseTask;

    /// Sets the target and opens it, which makes or empties it; to be called before start().
    /// Returns false, with the file's error text in error, when it cannot be opened.
    bool setFile(const QString &path, QString &error);

protected:
    QNetworkReply *createReply() override;
    void onAborted() override;
    void onError() override;
    void onRedirected() override;
    void onSucceeded() override;
    void onReadyRead() override;
    bool isWhole() override;

private:
    QFile m_file;
    bool m_hasWriteError = false;
};
