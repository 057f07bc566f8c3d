#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// Faults that are injected differently on each system, and differences that tests must know.
namespace Machine {

/// Whether a file's name may hold any character but a slash.
extern const bool allowsAnyFileName;

/// Whether QFile::link() makes links that are followed wherever a file is opened.
extern const bool makesFollowedLinks;

/// Whether a file can be removed while a program has it open.
extern const bool removesOpenFiles;

/// Whether a name is claimed by the lock of a file.
extern const bool locksFilesToClaimNames;

/// Whether tests have the fonts of every language.
extern const bool hasEveryFont;

/// Whether QProcess::start() returns before the process has started.
extern const bool startsProcessesLater;

/// Makes a program one that the system refuses to start.
bool makeUnstartable(const QString &program);

/// Refuses to let any file of this process grow beyond so many bytes, as a full disk would, for as
/// long as the object lives. Does nothing where that is not possible.
class FullDisk
{
public:
    explicit FullDisk(quint64 bytes);
    ~FullDisk();
    Q_DISABLE_COPY(FullDisk)

    static const bool isPossible;
};

/// Makes another user the owner of a file. Returns false where that is not allowed.
bool giveToAnotherUser(const QString &fileName);

/// Makes a named pipe. Returns false where a name of the file system cannot be one.
bool makePipe(const QString &fileName);

/// Whether this process has a file open.
bool isOpen(const QString &fileName);

/// Whether a file is a program that the system may hold on to after its process was killed.
bool keepsKilledProgram(const QString &fileName);

/// Whether the peer has closed a connection of which the system sends no notification.
bool isLeft(qintptr socketDescriptor);

/// Makes the zone that TZ would name this process's, or a null one the system's again. Returns
/// false where that is not possible.
bool setTimeZone(const QByteArray &zone);

/// Makes the system start no further thread of this process; false where that is not possible.
bool refuseThreads();

/// The most memory, in bytes, that this process has had so far.
qint64 peakMemory();

/// How long after its last data a connection may be reset without losing the reset.
int resetPauseMs();

} // namespace Machine
