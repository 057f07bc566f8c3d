#include "tests/support/scriptedserver.h"

#include "tests/support/machine.h"

#include <QtCore/QTimer>
#include <QtNetwork/QHostAddress>
#include <algorithm>

namespace {

QString loopbackUrl(quint16 port, const QString &path)
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port).arg(path);
}

} // namespace

ScriptedServer::Answer ScriptedServer::Answer::ok(const QByteArray &body)
{
    Answer answer;
    answer.m_body = body;
    return answer;
}

ScriptedServer::Answer ScriptedServer::Answer::error(int code, const QByteArray &body)
{
    Answer answer = ok(body);
    answer.m_code = code;
    return answer;
}

ScriptedServer::Answer ScriptedServer::Answer::redirect(const QString &location, int code,
                                                        const QByteArray &body)
{
    return error(code, body).withHeader("Location", location.toUtf8());
}

ScriptedServer::Answer &ScriptedServer::Answer::withHeader(const QByteArray &name,
                                                           const QByteArray &value)
{
    m_headers.append({name, value});
    return *this;
}

ScriptedServer::Answer &ScriptedServer::Answer::declaringLength(int length)
{
    m_declaredLength = length;
    return ended(End::Close, Part::Body);
}

ScriptedServer::Answer &ScriptedServer::Answer::withoutLength()
{
    m_hasLength = false;
    return withHeader("Connection", "close").ended(End::Close, Part::Body);
}

ScriptedServer::Answer &ScriptedServer::Answer::delayed(int milliseconds)
{
    m_delay = milliseconds;
    return *this;
}

ScriptedServer::Answer &ScriptedServer::Answer::held()
{
    m_held = true;
    return *this;
}

ScriptedServer::Answer &ScriptedServer::Answer::silent()
{
    return ended(End::Stall, Part::Nothing);
}

ScriptedServer::Answer &ScriptedServer::Answer::stalledInHead()
{
    return ended(End::Stall, Part::HalfHead);
}

ScriptedServer::Answer &ScriptedServer::Answer::stalledInBody(int bytes)
{
    return ended(End::Stall, Part::Body, bytes);
}

ScriptedServer::Answer &ScriptedServer::Answer::closedInHead()
{
    return ended(End::Close, Part::HalfHead);
}

ScriptedServer::Answer &ScriptedServer::Answer::closedInBody(int bytes)
{
    return ended(End::Close, Part::Body, bytes);
}

ScriptedServer::Answer &ScriptedServer::Answer::resetInHead()
{
    return ended(End::Reset, Part::HalfHead);
}

ScriptedServer::Answer &ScriptedServer::Answer::resetInBody(int bytes)
{
    return ended(End::Reset, Part::Body, bytes);
}

ScriptedServer::Answer &ScriptedServer::Answer::ended(End end, Part part, int bodyBytes)
{
    m_end = end;
    m_part = part;
    m_bodyBytes = bodyBytes;
    return *this;
}

QByteArray ScriptedServer::Answer::head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_code) + " Scripted\r\n";
    for (const auto &header : m_headers)
        head += header.first + ": " + header.second + "\r\n";
    if (m_hasLength) {
        const int length = m_declaredLength < 0 ? m_body.size() : m_declaredLength;
        head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    }
    return head + "\r\n";
}

QByteArray ScriptedServer::Answer::wire() const
{
    switch (m_part) {
    case Part::Nothing:
        return {};
    case Part::HalfHead:
        return head().left(head().size() / 2);
    case Part::Body:
        break;
    }
    return head() + (m_bodyBytes < 0 ? m_body : m_body.left(m_bodyBytes));
}

/// One client's connection, with one request after the other.
class ScriptedServer::Connection : public QObject
{
public:
    Connection(QTcpSocket *socket, ScriptedServer *server);
    ~Connection() override;

    Q_DISABLE_COPY(Connection)

    void send();
    bool isOpen() const { return !Machine::isLeft(m_socket->socketDescriptor()); }

private:
    void expectRequest();
    void read();
    void readRequestLine();
    void readRest();
    void take();
    void endWhenWritten();

    QTcpSocket *const m_socket;
    ScriptedServer *const m_server;
    QByteArray m_received;
    Request m_request;
    Answer m_answer;
    bool m_hasRequestLine = false;
    bool m_answering = false;
    bool m_isSent = false;
};

ScriptedServer::Connection::Connection(QTcpSocket *socket, ScriptedServer *server)
    : QObject(server)
    , m_socket(socket)
    , m_server(server)
{
    m_socket->setParent(this);
    connect(m_socket, &QTcpSocket::readyRead, this, &Connection::read);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &Connection::endWhenWritten);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        m_server->forget(this);
        deleteLater();
    });
    expectRequest();
}

ScriptedServer::Connection::~Connection()
{
    m_socket->disconnect(this);
}

void ScriptedServer::Connection::expectRequest()
{
    m_request = {};
    m_hasRequestLine = false;
    m_answering = false;
    m_isSent = false;
    // A connection is reset, rather than closed, when there is something in it that has not been
    // read. So nothing is read ahead before the request line has told what to do.
    m_socket->setReadBufferSize(1);
}

void ScriptedServer::Connection::read()
{
    if (m_answering)
        return;
    m_received += m_socket->readAll();
    if (!m_hasRequestLine)
        readRequestLine();
    else
        readRest();
}

void ScriptedServer::Connection::readRequestLine()
{
    if (!m_received.endsWith("\r\n"))
        return;
    const QList<QByteArray> words = m_received.trimmed().split(' ');
    m_request.method = words.value(0);
    m_request.path = QString::fromUtf8(words.value(1));
    m_received.clear();
    m_hasRequestLine = true;
    m_answer = m_server->nextAnswer(m_request.path);
    if (m_answer.m_end == Answer::End::Reset)
        take();
    else
        m_socket->setReadBufferSize(0);
}

void ScriptedServer::Connection::readRest()
{
    const int headSize = m_received.indexOf("\r\n\r\n");
    if (headSize < 0)
        return;
    if (m_request.headers.isEmpty()) {
        const QList<QByteArray> lines = m_received.left(headSize).split('\n');
        for (const QByteArray &line : lines) {
            const int colon = line.indexOf(':');
            m_request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
        }
    }
    const int bodySize = m_received.size() - headSize - 4;
    if (bodySize < m_request.headers.value("content-length").toInt())
        return;
    m_request.body = m_received.right(bodySize);
    m_received.clear();
    take();
}

void ScriptedServer::Connection::take()
{
    m_answering = true;
    m_server->take(this, m_request, m_answer);
}

void ScriptedServer::Connection::send()
{
    m_socket->write(m_answer.wire());
    m_isSent = true;
    endWhenWritten();
}

void ScriptedServer::Connection::endWhenWritten()
{
    if (!m_isSent || m_socket->bytesToWrite() > 0)
        return;
    switch (m_answer.m_end) {
    case Answer::End::KeepAlive:
        m_server->forget(this);
        expectRequest();
        break;
    case Answer::End::Stall:
        break;
    case Answer::End::Close:
        m_socket->disconnectFromHost();
        break;
    case Answer::End::Reset:
        QTimer::singleShot(Machine::resetPauseMs(), this, [this] { m_socket->abort(); });
        break;
    }
}

ScriptedServer::ScriptedServer()
{
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("cannot listen on the loopback interface");
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection())
            new Connection(socket, this);
    });
}

ScriptedServer::~ScriptedServer() = default;

QString ScriptedServer::url(const QString &path) const
{
    return loopbackUrl(m_server.serverPort(), path);
}

void ScriptedServer::answer(const QString &path, const Answer &answer)
{
    m_answers.insert(path, {answer});
}

void ScriptedServer::answer(const QString &path, const QVector<Answer> &answers)
{
    m_answers.insert(path, answers);
}

void ScriptedServer::release()
{
    if (!m_held.isEmpty())
        m_held.takeFirst()->send();
}

QStringList ScriptedServer::paths() const
{
    QStringList paths;
    for (const Request &request : m_requests)
        paths += request.path;
    return paths;
}

ScriptedServer::Answer ScriptedServer::nextAnswer(const QString &path)
{
    const auto answers = m_answers.find(path);
    if (answers == m_answers.end() || answers->isEmpty())
        return Answer::error(404, "nothing here");
    return answers->size() > 1 ? answers->takeFirst() : answers->constFirst();
}

void ScriptedServer::take(Connection *connection, const Request &request, const Answer &answer)
{
    m_requests.append(request);
    m_open.insert(connection);
    m_mostOpenRequests = std::max(m_mostOpenRequests, openRequests());
    if (answer.m_held)
        m_held.append(connection);
    else
        QTimer::singleShot(answer.m_delay, connection, [connection] { connection->send(); });
    Q_EMIT requested();
}

int ScriptedServer::openRequests() const
{
    return static_cast<int>(
        std::count_if(m_open.begin(), m_open.end(),
                      [](const Connection *connection) { return connection->isOpen(); }));
}

void ScriptedServer::forget(Connection *connection)
{
    m_open.remove(connection);
    m_held.removeAll(connection);
}

ClosedPort::ClosedPort()
{
    // Bound and not listening: no other program can take the port meanwhile.
    if (!m_socket.bind(QHostAddress::LocalHost, 0, QAbstractSocket::DontShareAddress))
        qFatal("cannot bind a port on the loopback interface");
}

QString ClosedPort::url(const QString &path) const
{
    return loopbackUrl(m_socket.localPort(), path);
}
