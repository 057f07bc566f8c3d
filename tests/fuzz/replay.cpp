// Gives a fuzz target each file of the named folders once, so that the seeds, and inputs that once
// failed, are tests in every build. A warning of the framework is a failure, too.

#include "tests/fuzz/target.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

namespace {

void refuseWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    // What the offscreen platform cannot do, and types in an ini file that are not known.
    const bool isExpected =
        text.startsWith(QLatin1String("This plugin does not support ")) ||
        text.startsWith(QLatin1String("QVariant::load: unknown user type with name "));
    if (isExpected)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
    Fuzz::require(type == QtDebugMsg || type == QtInfoMsg, "the framework has nothing to warn of");
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    qInstallMessageHandler(refuseWarning);
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QFile::decodeName(argv[i]));
        const QStringList names = folder.entryList(QDir::Files, QDir::Name);
        for (const QString &name : names) {
            QFile file(folder.filePath(name));
            Fuzz::require(file.open(QIODevice::ReadOnly), "every file can be read");
            std::printf("%s\n", qPrintable(name));
            std::fflush(stdout);
            const QByteArray content = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.constData()),
                                   static_cast<std::size_t>(content.size()));
            ++files;
        }
    }
    // Deletes what the target set up as well; what remains has leaked.
    delete QCoreApplication::instance();
    Fuzz::require(files > 0, "there are seeds");
    std::printf("%d files\n", files);
    return 0;
}
