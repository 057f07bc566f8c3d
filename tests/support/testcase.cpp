#include "tests/support/testcase.h"

#include <QtCore/QtGlobal>

namespace {

QtMessageHandler qtTestHandler = nullptr;

void dropPlatformWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support ")))
        qtTestHandler(type, context, text);
}

} // namespace

void TestCase::initTestCase()
{
    qtTestHandler = qInstallMessageHandler(dropPlatformWarnings);
}
