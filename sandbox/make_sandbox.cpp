// make-sandbox FOLDER: writes a sample installation and an upgrade on offer below FOLDER and
// prints, as shell assignments, the environment in which a program sees them.
//
// make-sandbox --feed FOLDER: writes only the upgrade on offer, into FOLDER itself.

#include "sandbox/installation/samplefeed.h"
#include "sandbox/installation/sampleinstallation.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--feed"))
        return SampleFeed(arguments.at(2)).writeUpgrade(QStringLiteral("7.3.0.1")) ? 0 : 1;
    if (arguments.size() != 2) {
        QTextStream(stderr) << "usage: make-sandbox FOLDER\n";
        return 2;
    }

    const SampleInstallation installation(arguments.at(1));
    const SampleFeed feed(arguments.at(1) + QStringLiteral("/Feed"));
    if (!installation.write() || !feed.writeUpgrade(QStringLiteral("7.3.0.1"))) {
        QTextStream(stderr) << "make-sandbox: cannot write below " << arguments.at(1) << '\n';
        return 1;
    }
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    QMap<QString, QString> environment = installation.environment();
    const QMap<QString, QString> feedEnvironment = feed.environment();
    for (auto variable = feedEnvironment.begin(); variable != feedEnvironment.end(); ++variable)
        environment.insert(variable.key(), variable.value());
    for (auto variable = environment.begin(); variable != environment.end(); ++variable) {
        QString value = variable.value();
        value.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
        out << variable.key() << "='" << value << "'\n";
    }
    return 0;
}
