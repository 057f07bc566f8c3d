#pragma once

#include "net/kbasetask.h"

/// A POST. The answer stays in memory, as for a GET. Every redirect is posted to again, with the
/// same body, whatever its code.
class KPostTask : public KBaseTask
{
    Q_OBJECT

public:
    KPostTask(QNetworkAccessManager *manager, const QNetworkRequest &request,
              const QByteArray &data);
    KPostTask(QNetworkAccessManager *manager, const QString &url, const QByteArray &data);

protected:
    QNetworkReply *createReply() override;

private:
    const QByteArray m_data;
};
