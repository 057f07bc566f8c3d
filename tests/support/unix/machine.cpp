#include "tests/support/machine.h"

#include <QtCore/QFile>

#include <ctime>
#include <unistd.h>

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

bool giveToAnotherUser(const QString &fileName)
{
    constexpr uid_t nobody = 65534;
    constexpr auto sameGroup = static_cast<gid_t>(-1);
    return chown(QFile::encodeName(fileName).constData(), nobody, sameGroup) == 0;
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

bool setTimeZone(const QByteArray &zone)
{
    if (zone.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", zone);
    tzset();
    return true;
}

int resetPauseMs()
{
    return 0;
}

} // namespace Machine
