// bench-downloads configuration: fetches the configuration with its pictures.
// bench-downloads file URL TARGET: fetches one file.
// Prints by how many bytes the process grew meanwhile at most.

#include "config/download/configdownloader.h"
#include "net/kgetfiletask.h"
#include "net/sharedaccessmanager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTextStream>

#include <cstdlib>

namespace {

// A line of the kernel's account, such as "VmHWM:     1234 kB".
qint64 memory(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').constFirst().toLongLong() * 1024;
    }
    return 0;
}

int fetchConfiguration()
{
    ConfigDownloader downloader;
    QObject::connect(&downloader, &ConfigDownloader::finished, qApp, &QCoreApplication::quit);
    downloader.start();
    return QCoreApplication::exec();
}

int fetchFile(const QString &url, const QString &target)
{
    KGetFileTask task(Net::sharedAccessManager(), url);
    QString error;
    if (!task.setFile(target, error))
        return EXIT_FAILURE;
    task.start();
    task.waitForFinished(-1);
    return task.status() == KBaseTask::TaskSucceeded ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QStringList arguments = QCoreApplication::arguments();
    const qint64 before = memory("VmRSS");
    int code = EXIT_FAILURE;
    if (arguments.value(1) == QLatin1String("configuration"))
        code = fetchConfiguration();
    else if (arguments.size() == 4 && arguments.at(1) == QLatin1String("file"))
        code = fetchFile(arguments.at(2), arguments.at(3));
    QTextStream(stdout) << memory("VmHWM") - before << '\n';
    return code;
}
