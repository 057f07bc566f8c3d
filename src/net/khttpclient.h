#pragma once

#include "net/kbasetask.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkRequest>

/// Blocking HTTP calls: each runs one task in an event loop of its own and returns its final
/// status. Only TaskSucceeded fills data, only TaskFailed fills error; otherwise they stay as
/// they were. Other events are handled meanwhile, so callers must expect to be re-entered.
///
/// msec is the time-out in milliseconds, negative for none.
class KHttpClient : public QObject
{
    Q_OBJECT

public:
    explicit KHttpClient(QObject *parent = nullptr);

    KBaseTask::Status get(const QNetworkRequest &request, QByteArray &data, QString &error,
                          int msec);
    KBaseTask::Status get(const QString &url, QByteArray &data, QString &error, int msec);

    /// Nothing is requested when the file cannot be opened: TaskFailed with the file's error text.
    /// msec is ignored on purpose: a large file may take any time.
    KBaseTask::Status getFile(const QNetworkRequest &request, const QString &filePath,
                              QString &error, int msec);
    KBaseTask::Status getFile(const QString &url, const QString &filePath, QString &error,
                              int msec);

    /// The body counts as a submitted form unless the request carries a "Content-Type".
    KBaseTask::Status post(const QNetworkRequest &request, const QByteArray &body, QByteArray &data,
                           QString &error, int msec);
    KBaseTask::Status post(const QString &url, const QByteArray &body, QByteArray &data,
                           QString &error, int msec);

private:
    QNetworkAccessManager m_manager;
};
