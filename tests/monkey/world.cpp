#include "tests/monkey/world.h"

#include "tests/support/literals.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

World::World()
    : m_sandbox(Sandbox::Content::Nothing)
    , m_programs{m_sandbox->installDir() + "/unins000.exe"_s, m_sandbox->updateInstaller(),
                 m_sandbox->installDir() + "/Norvane Clipwright X.exe"_s}
{
    const QByteArray orders = QFile::encodeName(m_sandbox.path("orders"_s));
    // Open for reading and writing: neither end then waits for the other to be opened.
    if (mkfifo(orders.constData(), S_IRUSR | S_IWUSR) == 0)
        m_orders = open(orders.constData(), O_RDWR | O_CLOEXEC);
    if (m_orders < 0)
        qFatal("cannot make a pipe");
    qputenv("MONKEY_ORDERS", orders);
    m_sandbox.writeFile("UpdateInfo.json"_s, "{\"version\": \"8.0.0.1\"}\n");
    QDir().mkpath(m_sandbox->productDataDir());
    m_sandbox->writeProductIni("ENG"_s);
}

World::~World()
{
    close(m_orders);
}

void World::reset()
{
    // A new record for each life: a launched product is detached, and may write its line when the
    // next life has begun.
    QFile::remove(recordFile());
    ++m_lives;
    qputenv("MONKEY_RECORD", QFile::encodeName(recordFile()));
    for (const Program program : {Program::Uninstaller, Program::UpdateInstaller, Program::Product})
        set(program, Condition::Whole);
    QFile dataFile(m_sandbox->installDir() + "/unins000.dat"_s);
    if (!dataFile.open(QIODevice::WriteOnly))
        qFatal("cannot write the uninstaller's data file");
    setRegistered(true);
    setOnline(true);
}

void World::set(Program program, Condition condition)
{
    const QString file = m_programs.at(static_cast<int>(program));
    QFile::remove(file);
    QDir().mkpath(QFileInfo(file).path());
    if (condition == Condition::Whole)
        QFile::link(QStringLiteral(MONKEY_CHILD), file);
    else if (condition == Condition::Unstartable)
        QFile::link("/dev/null"_s, file);
}

void World::setRegistered(bool isRegistered)
{
    const QString key = "HKEY_CLASSES_ROOT/NCPFile/path"_s;
    if (isRegistered)
        m_sandbox->setSystemValue(key, m_sandbox->installDir());
    else
        m_sandbox->removeSystemValue(key);
}

void World::setOnline(bool isOnline)
{
    m_sandbox->setSystemValue("System/Online"_s, isOnline ? "true"_s : "false"_s);
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
    return m_sandbox.path("record-%1.txt"_s.arg(m_lives));
}

QString World::updateDescription() const
{
    return m_sandbox.path("UpdateInfo.json"_s);
}
