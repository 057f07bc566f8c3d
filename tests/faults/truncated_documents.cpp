// truncated-documents FILE: reads the configuration document, which FILE is in the sandbox, cut at
// every length from its whole to nothing, and builds the pages that show it. Only the whole may
// give any reason. Says what it tried; exits with 1 when a part was taken for a document.

#include "config/content/configcontent.h"
#include "ui/optionpage.h"
#include "ui/productpage.h"
#include "ui/uninstallpage.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

namespace {

int reasonsShown()
{
    const OptionPage page;
    const UninstallPage uninstallPage;
    const ProductPage productPage;
    return page.findChildren<QRadioButton *>().size();
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QTextStream out(stdout);
    QFile file(QApplication::arguments().value(1));
    if (file.fileName() != Config::configFilePath()) {
        out << "the program reads " << Config::configFilePath() << '\n';
        return 2;
    }
    const qint64 whole = file.size();

    // From below: what was read once with any content is kept for the life of the process.
    int tried = 0;
    QFile original(file.fileName());
    if (!original.open(QIODevice::ReadOnly))
        return 2;
    const QByteArray content = original.readAll();
    for (qint64 length = 0; length < whole; ++length, ++tried) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(content.constData(), length) != length)
            return 2;
        file.close();
        if (!Config::loadConfig().isEmpty() || reasonsShown() != 0) {
            out << "a document is made of the first " << length << " of " << whole << " bytes\n";
            return 1;
        }
    }
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return 2;
    file.close();
    const int reasons = reasonsShown();
    out << tried << " lengths gave no reason, the whole gave " << reasons << '\n';
    return tried > 0 && reasons > 0 ? 0 : 1;
}
