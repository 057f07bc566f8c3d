// Gives a fuzz target the files of the folders that are named, once each. With it the seeds, and
// whatever else was once found, are tests in every build. A warning of the framework is a flaw as
// well.

#include "tests/fuzz/target.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

namespace {

void refuseWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    // What the platform cannot do, and what an ini file may ask for in vain.
    const bool isExcuse =
        text.startsWith(QLatin1String("This plugin does not support ")) ||
        text.startsWith(QLatin1String("QVariant::load: unknown user type with name "));
    if (isExcuse)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
    Fuzz::require(type == QtDebugMsg || type == QtInfoMsg, "there is nothing to warn of");
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
    // With it goes what the target set up, so that what is left then has leaked.
    delete QCoreApplication::instance();
    Fuzz::require(files > 0, "there are seeds");
    std::printf("%d files\n", files);
    return 0;
}
