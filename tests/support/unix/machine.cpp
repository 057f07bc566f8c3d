#include "tests/support/machine.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Machine {

const bool allowsAnyFileName = true;
const bool makesFollowedLinks = true;
const bool removesOpenFiles = true;
const bool locksFilesToClaimNames = true;
const bool hasEveryFont = true;
const bool startsProcessesLater = true;

namespace {

void limitFileSize(rlim_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

bool makeUnstartable(const QString &program)
{
    return QFile::setPermissions(program, QFile::ReadOwner);
}

FullDisk::FullDisk(quint64 bytes)
{
    // Without the signal, which would end the process, the write fails.
    std::signal(SIGXFSZ, SIG_IGN);
    limitFileSize(bytes);
}

FullDisk::~FullDisk()
{
    limitFileSize(RLIM_INFINITY);
}

const bool FullDisk::isPossible = true;

bool giveToAnotherUser(const QString &fileName)
{
    constexpr uid_t nobody = 65534;
    constexpr auto sameGroup = static_cast<gid_t>(-1);
    return chown(QFile::encodeName(fileName).constData(), nobody, sameGroup) == 0;
}

bool makePipe(const QString &fileName)
{
    // Returning false would skip the test, as on a system without such pipes.
    if (mkfifo(QFile::encodeName(fileName).constData(), S_IRUSR | S_IWUSR) != 0)
        qFatal("No named pipe can be made: %s", qPrintable(fileName));
    return true;
}

bool isOpen(const QString &fileName)
{
    const QFileInfoList descriptors =
        QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System);
    return std::any_of(descriptors.begin(), descriptors.end(), [&](const QFileInfo &descriptor) {
        return descriptor.symLinkTarget() == QFileInfo(fileName).canonicalFilePath();
    });
}

bool keepsKilledProgram(const QString & /*fileName*/)
{
    return false;
}

bool isLeft(qintptr /*socketDescriptor*/)
{
    return false; // the system sends a notification
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

bool refuseThreads()
{
    constexpr std::size_t tooLarge = std::size_t(1) << 46; // of a stack
    pthread_attr_t attributes;
    // Likewise.
    if (pthread_attr_init(&attributes) != 0 ||
        pthread_attr_setstacksize(&attributes, tooLarge) != 0 ||
        pthread_setattr_default_np(&attributes) != 0)
        qFatal("The stack of a thread cannot be made too large");
    return true;
}

qint64 peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}

int resetPauseMs()
{
    return 0;
}

} // namespace Machine
