#include "tests/support/machine.h"

#include <QtCore/QFile>

namespace Machine {

bool makeUnstartable(const QString &program)
{
    return QFile::setPermissions(program, QFile::ReadOwner);
}

bool canFillDisk()
{
    return true;
}

bool makeFull(const QString &fileName)
{
    return QFile::link(QStringLiteral("/dev/full"), fileName);
}

bool keepsKilledProgram(const QString & /*fileName*/)
{
    return false;
}

bool startsProcessesLater()
{
    return true;
}

bool isLeft(qintptr /*socketDescriptor*/)
{
    return false; // the system tells
}

int resetPauseMs()
{
    return 0;
}

} // namespace Machine
