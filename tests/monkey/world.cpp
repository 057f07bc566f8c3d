#include "tests/monkey/world.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

World::World()
    : m_sandbox(Sandbox::Content::Nothing)
{
    const QByteArray orders = QFile::encodeName(m_sandbox.path(QStringLiteral("orders")));
    // Open at both ends, so that nobody waits for the other end.
    if (mkfifo(orders.constData(), S_IRUSR | S_IWUSR) != 0 ||
        (m_orders = open(orders.constData(), O_RDWR | O_CLOEXEC)) < 0)
        qFatal("cannot make a pipe");
    qputenv("MONKEY_ORDERS", orders);
    m_sandbox.writeFile(QStringLiteral("UpdateInfo.json"), "{\"version\": \"8.0.0.1\"}\n");
    QDir().mkpath(m_sandbox->productDataDir());
    m_sandbox->writeProductIni(QStringLiteral("ENG"));
}

World::~World()
{
    close(m_orders);
}

void World::reset()
{
    // A new record for each life: a launched program is nobody's child, and may write when another
    // life has begun.
    QFile::remove(recordFile());
    ++m_lives;
    qputenv("MONKEY_RECORD", QFile::encodeName(recordFile()));
    for (const Program program : {Program::Uninstaller, Program::UpdateInstaller, Program::Product})
        set(program, Condition::Whole);
    m_sandbox.writeFile(QDir(m_sandbox.path(QString())).relativeFilePath(m_sandbox->installDir()) +
                            QStringLiteral("/unins000.dat"),
                        {});
    setRegistered(true);
    setOnline(true);
}

void World::set(Program program, Condition condition)
{
    const QString file = fileOf(program);
    QFile::remove(file);
    QDir().mkpath(QFileInfo(file).path());
    if (condition == Condition::Whole)
        QFile::link(QStringLiteral(MONKEY_CHILD), file);
    else if (condition == Condition::Unstartable)
        QFile::link(QStringLiteral("/dev/null"), file);
}

void World::setRegistered(bool isRegistered)
{
    const QString key = QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path");
    if (isRegistered)
        m_sandbox->setSystemValue(key, m_sandbox->installDir());
    else
        m_sandbox->removeSystemValue(key);
}

void World::setOnline(bool isOnline)
{
    m_sandbox->setSystemValue(QStringLiteral("System/Online"),
                              isOnline ? QStringLiteral("true") : QStringLiteral("false"));
}

void World::tellChild(int exitCode) const
{
    const QByteArray line = QByteArray::number(exitCode) + '\n';
    if (write(m_orders, line.constData(), static_cast<std::size_t>(line.size())) != line.size())
        qFatal("cannot write into the pipe");
}

QStringList World::record() const
{
    return Sandbox::readLines(recordFile());
}

QString World::recordFile() const
{
    return m_sandbox.path(QStringLiteral("record-%1.txt").arg(m_lives));
}

QString World::updateDescription() const
{
    return m_sandbox.path(QStringLiteral("UpdateInfo.json"));
}

QString World::fileOf(Program program) const
{
    switch (program) {
    case Program::Uninstaller:
        return m_sandbox->installDir() + QStringLiteral("/unins000.exe");
    case Program::UpdateInstaller:
        return m_sandbox->updateInstaller();
    case Program::Product:
        break;
    }
    return m_sandbox->installDir() + QStringLiteral("/Norvane Clipwright X.exe");
}
