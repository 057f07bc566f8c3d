#pragma once

#include "tests/support/scriptedserver.h"

#include <QtCore/QByteArray>
#include <QtTest/QTest>

/// Rows of answers that every kind of task is tried with. Columns: "answer" and, for those that
/// are whole, the "body" that must come out of them.
namespace Answers {

using Answer = ScriptedServer::Answer;

/// Some megabytes without a pattern that could hide a lost or repeated piece.
inline QByteArray largeBody()
{
    static const QByteArray large = [] {
        QByteArray body;
        for (int number = 0; body.size() < 4 * 1024 * 1024; ++number)
            body.append(QByteArray::number(number)).append('\n');
        return body;
    }();
    return large;
}

/// "packed text" as gzip writes it.
inline QByteArray gzipBytes()
{
    return QByteArray::fromHex("1f8b08000000000002032b484cce4e4d512849ad2801000cf40ad20b000000");
}

inline void wholeRows()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QByteArray>("body");

    const QByteArray html = "<!DOCTYPE html><html><body>Please sign in</body></html>";
    const QByteArray large = largeBody();
    QTest::newRow("text") << Answer::ok("text") << QByteArray("text");
    QTest::newRow("empty body") << Answer::ok() << QByteArray();
    QTest::newRow("another good code") << Answer::error(203, "text") << QByteArray("text");
    QTest::newRow("page of HTML") << Answer::ok(html) << html;
    QTest::newRow("bytes of every kind")
        << Answer::ok(QByteArray("\0\xff\r\n\r\n\0", 7)) << QByteArray("\0\xff\r\n\r\n\0", 7);
    QTest::newRow("some megabytes") << Answer::ok(large) << large;
    QTest::newRow("some megabytes of unknown length") << Answer::ok(large).withoutLength() << large;
    QTest::newRow("compressed") << Answer::ok(gzipBytes()).withHeader("Content-Encoding", "gzip")
                                << QByteArray("packed text");
    QTest::newRow("late") << Answer::ok("text").delayed(50) << QByteArray("text");
    QTest::newRow("more than its declared length")
        << Answer::ok("text and more").declaringLength(4) << QByteArray("text");
}

inline void failingRows()
{
    QTest::addColumn<Answer>("answer");

    for (const int code : {400, 401, 403, 404, 410, 500, 502, 503})
        QTest::addRow("%d", code) << Answer::error(code, "sorry");
    QTest::newRow("closed in the head") << Answer::ok("text").closedInHead();
    QTest::newRow("closed in the body") << Answer::ok("text").closedInBody(2);
    QTest::newRow("reset in the head") << Answer::ok("text").resetInHead();
    QTest::newRow("reset in the body") << Answer::ok("text").resetInBody(2);
    QTest::newRow("reset in a large body") << Answer::ok(largeBody()).resetInBody(3000000);
    QTest::newRow("less than its declared length") << Answer::ok("text").declaringLength(400);
    QTest::newRow("less than its declared length, large")
        << Answer::ok(largeBody()).declaringLength(5000000);
}

inline void stallingRows()
{
    QTest::addColumn<Answer>("answer");

    QTest::newRow("before the head") << Answer::ok("text").silent();
    QTest::newRow("in the head") << Answer::ok("text").stalledInHead();
    QTest::newRow("before the body") << Answer::ok("text").stalledInBody(0);
    QTest::newRow("in the body") << Answer::ok("text").stalledInBody(2);
}

} // namespace Answers
