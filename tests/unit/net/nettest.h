#pragma once

#include "tests/support/literals.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtCore/QTimerEvent>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

/// Records the intervals of the timers that fire while it lives.
class FiredTimers : public QObject
{
public:
    FiredTimers() { QCoreApplication::instance()->installEventFilter(this); }

    QList<int> intervals;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        const auto *timer = qobject_cast<QTimer *>(receiver);
        if (timer && event->type() == QEvent::Timer)
            intervals += timer->interval();
        return false;
    }
};

/// Base of the tests of requests: each test has a server and an access manager of its own.
class NetTest : public TestCase
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<ScriptedServer>();
        m_manager = std::make_unique<QNetworkAccessManager>();
    }

    void cleanup()
    {
        m_manager.reset();
        m_server.reset();
    }

protected:
    QString url(const QString &path = "/a"_s) const { return m_server->url(path); }

    /// A request with a header by which it is known again.
    static QNetworkRequest request(const QString &url)
    {
        QNetworkRequest request{QUrl(url)};
        request.setRawHeader("X-Clip", "one");
        request.setRawHeader("Content-Type", "text/plain");
        return request;
    }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};
