#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// Accidents that each system has in its own way.
namespace Machine {

/// Makes a program one that the system refuses to start.
bool makeUnstartable(const QString &program);

/// Refuses to let any file of this process grow beyond so many bytes, as a full disk would, for as
/// long as the object lives. Where isPossible() is false, it does nothing.
class FullDisk
{
public:
    explicit FullDisk(quint64 bytes);
    ~FullDisk();
    Q_DISABLE_COPY(FullDisk)

    static bool isPossible();
};

/// Makes another user the owner of a file. Returns false where that is not allowed.
bool giveToAnotherUser(const QString &fileName);

/// Whether a file is a program that the system may hold on to after its process was killed.
bool keepsKilledProgram(const QString &fileName);

/// Whether a process that is asked for starts only when events are handled again.
bool startsProcessesLater();

/// Whether the other end has left a connection and the system has failed to tell.
bool isLeft(qintptr socketDescriptor);

/// Makes the zone that TZ would name this process's, or a null one the system's again. Returns
/// false where that is not possible.
bool setTimeZone(const QByteArray &zone);

/// How long a connection must rest before its reset, for the other end to hear of it.
int resetPauseMs();

} // namespace Machine
