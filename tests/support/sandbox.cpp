#include "tests/support/sandbox.h"

#include "analytics/session.h"
#include "tests/support/machine.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>

Sandbox::Sandbox(Content content)
    : m_folder(QDir::tempPath() + QStringLiteral("/clipwright tëst-XXXXXX"))
    , m_installation(m_folder.path())
{
    Q_ASSERT(m_folder.isValid());
    const QMap<QString, QString> environment = m_installation.environment();
    for (auto variable = environment.begin(); variable != environment.end(); ++variable) {
        const QByteArray name = variable.key().toLatin1();
        m_previousEnvironment.insert(variable.key(), qgetenv(name.constData()));
        qputenv(name.constData(), QFile::encodeName(variable.value()));
    }
    QDir().mkpath(path(QStringLiteral("Temp")));
    m_installation.clearSystemValues();
    if (content == Content::Installation && !m_installation.write())
        qFatal("cannot write the sample installation");
}

Sandbox::~Sandbox()
{
    Analytics::stopAnalytics(); // some systems remove no folder with an open file in it
    m_installation.clearSystemValues();
    for (auto variable = m_previousEnvironment.begin(); variable != m_previousEnvironment.end();
         ++variable) {
        const QByteArray name = variable.key().toLatin1();
        if (variable.value().isNull())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), variable.value());
    }

    // A process that has just ended may keep its files open for a moment.
    m_folder.setAutoRemove(false);
    const QDeadlineTimer deadline(10000);
    while (!QDir(m_folder.path()).removeRecursively()) {
        if (deadline.hasExpired()) {
            reportLeftFiles();
            break;
        }
        QThread::msleep(50);
    }
}

// A file that cannot be removed is still open, in the tested code or in the test; some systems also
// keep the program of a killed process open.
void Sandbox::reportLeftFiles() const
{
    QStringList left;
    QDirIterator files(m_folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext())
        left.append(files.next());
    if (left.isEmpty())
        left.append(m_folder.path());
    for (const QString &path : qAsConst(left)) {
        if (!Machine::keepsKilledProgram(path))
            qWarning("cannot remove %s", qPrintable(path));
    }
}

QString Sandbox::path(const QString &relative) const
{
    return m_folder.path() + QLatin1Char('/') + relative;
}

void Sandbox::writeFile(const QString &relative, const QByteArray &content) const
{
    const QString fileName = path(relative);
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

QByteArray Sandbox::readFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList Sandbox::readLines(const QString &fileName)
{
    return QString::fromUtf8(readFile(fileName)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
