#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

/// An HTTP server on the loopback interface, with a port of its own, that answers as told: well,
/// late, in part, wrongly or not at all. It runs in the thread of its test, from the event loop.
class ScriptedServer : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray method;
        QString path;                         ///< with the query, as sent
        QMap<QByteArray, QByteArray> headers; ///< names in lower case
        QByteArray body;
    };

    /// What to answer to one request. Answers are put together from left to right:
    /// Answer::ok("text").delayed(50).resetInBody(2).
    class Answer
    {
    public:
        static Answer ok(const QByteArray &body = {});
        static Answer error(int code, const QByteArray &body = {});
        static Answer redirect(const QString &location, int code = 302,
                               const QByteArray &body = {});

        Answer &withHeader(const QByteArray &name, const QByteArray &value);

        /// Declares another length than the body has, and closes behind the body.
        Answer &declaringLength(int length);

        /// Declares no length; the body ends where the connection does.
        Answer &withoutLength();

        Answer &delayed(int milliseconds);

        /// Waits for release() before anything is sent.
        Answer &held();

        /// Sends nothing and keeps the connection open.
        Answer &silent();

        /// Sends a part and then nothing more, the connection staying open.
        Answer &stalledInHead();
        Answer &stalledInBody(int bytes);

        /// Sends a part and closes the connection in good order.
        Answer &closedInHead();
        Answer &closedInBody(int bytes);

        /// Sends a part and resets the connection. Of such a request only method and path are
        /// recorded.
        Answer &resetInHead();
        Answer &resetInBody(int bytes);

    private:
        friend class ScriptedServer;

        enum class Part { Nothing, HalfHead, Body };
        enum class End { KeepAlive, Stall, Close, Reset };

        Answer &ended(End end, Part part, int bodyBytes = -1);
        QByteArray head() const;
        QByteArray wire() const;

        int m_code = 200;
        QList<QPair<QByteArray, QByteArray>> m_headers;
        QByteArray m_body;
        bool m_hasLength = true;
        int m_declaredLength = -1; ///< -1: the body's
        int m_delay = 0;
        bool m_held = false;
        Part m_part = Part::Body;
        int m_bodyBytes = -1; ///< of the body to be sent; -1: all
        End m_end = End::KeepAlive;
    };

    ScriptedServer();
    ~ScriptedServer() override;

    Q_DISABLE_COPY(ScriptedServer)

    /// Address of a path on this server; without a path, without a slash at its end.
    QString url(const QString &path = QString()) const;

    /// The answers to requests for a path, in turn; the last one is given again and again. A path
    /// without answers is not found.
    void answer(const QString &path, const Answer &answer);
    void answer(const QString &path, const QVector<Answer> &answers);

    /// Sends the held answer that has waited longest.
    void release();

    int heldAnswers() const { return m_held.size(); }

    /// Everything that was asked for, in the order of arrival.
    const QVector<Request> &requests() const { return m_requests; }
    QStringList paths() const;

    /// Requests without a complete answer whose connection is open: now, and at most so far.
    int openRequests() const;
    int mostOpenRequests() const { return m_mostOpenRequests; }

Q_SIGNALS:
    /// A request has arrived whole.
    void requested();

private:
    class Connection;

    Answer nextAnswer(const QString &path);
    void take(Connection *connection, const Request &request, const Answer &answer);
    void forget(Connection *connection);

    QTcpServer m_server;
    QHash<QString, QVector<Answer>> m_answers;
    QVector<Request> m_requests;
    QList<Connection *> m_held;
    QSet<Connection *> m_open;
    int m_mostOpenRequests = 0;
};

/// A port on the loopback interface that refuses connections for as long as the object lives.
class ClosedPort
{
public:
    ClosedPort();

    QString url(const QString &path = QString()) const;

private:
    QTcpSocket m_socket;
};

Q_DECLARE_METATYPE(ScriptedServer::Answer)
