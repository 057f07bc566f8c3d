#include "platform/singleinstance.h"

#include <QtCore/QFile>
#include <QtCore/QString>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Platform {

bool claimSingleInstance(const char *name)
{
    // The kernel drops a file lock with its process, so a killed copy leaves nothing stale. The
    // file itself stays: removing it would let two processes lock two files of the same name.
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR", QStringLiteral("/tmp"));
    const QString file = QStringLiteral("%1/%2.%3.lock")
                             .arg(folder, QString::fromUtf8(name), QString::number(getuid()));
    const int descriptor = open(QFile::encodeName(file).constData(),
                                O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return true;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && status.st_uid != getuid()) {
        close(descriptor); // another user's file: that user could hold the lock forever
        return true;
    }
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return true; // held, and never closed, until the process ends
    const bool heldByAnother = errno == EWOULDBLOCK;
    close(descriptor);
    return !heldByAnother;
}

} // namespace Platform
