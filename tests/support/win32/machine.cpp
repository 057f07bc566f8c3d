#include "tests/support/machine.h"

#include <QtCore/QFile>

// clang-format off
#include <winsock2.h>
#include <windows.h>
#include <psapi.h>
// clang-format on

namespace Machine {

const bool allowsAnyFileName = false;
const bool makesFollowedLinks = false;
const bool removesOpenFiles = false;
const bool locksFilesToClaimNames = false;
const bool hasEveryFont = false; // Qt's offscreen platform has those of one folder
const bool startsProcessesLater = false;

bool makeUnstartable(const QString &program)
{
    QFile file(program);
    return file.open(QIODevice::WriteOnly) && file.write("no program") > 0;
}

FullDisk::FullDisk(quint64 /*bytes*/) {}

FullDisk::~FullDisk() = default;

const bool FullDisk::isPossible = false;

bool giveToAnotherUser(const QString & /*fileName*/)
{
    return false;
}

bool makePipe(const QString & /*fileName*/)
{
    return false;
}

bool isOpen(const QString &fileName)
{
    // For this process alone, which the system refuses while there is another handle.
    const HANDLE alone = CreateFileW(reinterpret_cast<const wchar_t *>(fileName.utf16()),
                                     GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (alone == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(alone);
    return false;
}

// Wine keeps the file of a process that was killed while it was loaded.
bool keepsKilledProgram(const QString &fileName)
{
    return fileName.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive);
}

// Wine may not send the notification.
bool isLeft(qintptr socketDescriptor)
{
    char byte = 0;
    const int read = recv(static_cast<SOCKET>(socketDescriptor), &byte, 1, MSG_PEEK);
    return read == 0 || (read == SOCKET_ERROR && WSAGetLastError() != WSAEWOULDBLOCK);
}

bool setTimeZone(const QByteArray & /*zone*/)
{
    return false; // Windows has one for the whole machine
}

bool refuseThreads()
{
    return false;
}

qint64 peakMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<qint64>(counters.PeakWorkingSetSize);
}

int resetPauseMs()
{
    return 200; // Wine loses a reset that comes on the heels of data
}

} // namespace Machine
