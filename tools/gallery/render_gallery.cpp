// Renders every surface in one language, or every control, into a folder of pictures.

#include "app/env/languages.h"
#include "tests/support/interfacelanguage.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tools/gallery/contrast.h"
#include "tools/gallery/controls.h"
#include "tools/gallery/surfaces.h"
#include "ui/systemlook.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <cstdlib>

namespace {

void save(QWidget &window, const QString &name, const QDir &folder)
{
    const QString fileName = folder.filePath(name + QStringLiteral(".png"));
    if (!window.grab().save(fileName))
        qFatal("cannot write %s", qPrintable(fileName));
}

void measure(QWidget &window, const QString &surface, QJsonArray &contrasts)
{
    const QList<Gallery::Contrast> texts = Gallery::measureContrast(window);
    for (const Gallery::Contrast &text : texts) {
        contrasts.append(QJsonObject{{QStringLiteral("surface"), surface},
                                     {QStringLiteral("widget"), text.widget},
                                     {QStringLiteral("ink"), text.ink.name()},
                                     {QStringLiteral("ground"), text.ground.name()},
                                     {QStringLiteral("ratio"), text.ratio}});
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where to render to"));
    parser.addPositionalArgument(QStringLiteral("language"),
                                 QStringLiteral("the installer's code, such as ENG"));
    parser.addOption({QStringLiteral("contrast"), QStringLiteral("measure the texts' contrast")});
    parser.addOption({QStringLiteral("scheme"),
                      QStringLiteral("a high-contrast scheme, dark or light"),
                      QStringLiteral("name")});
    parser.addHelpOption();
    parser.process(application);
    if (parser.positionalArguments().size() != 2)
        parser.showHelp(EXIT_FAILURE);

    const QDir folder(parser.positionalArguments().constFirst());
    folder.mkpath(QStringLiteral("."));
    QApplication::setCursorFlashTime(0); // or pictures differ by a caret
    const Sandbox sandbox;
    const LinkCatcher links;
    const InterfaceLanguage language(*sandbox.operator->(), parser.positionalArguments().at(1));
    const LookApplied look(
        parser.isSet(QStringLiteral("scheme"))
            ? SystemLook::rules(
                  Languages::toLanguageCode(parser.positionalArguments().at(1)),
                  Gallery::contrastSchemes().value(parser.value(QStringLiteral("scheme"))), true)
            : SystemLook::rules());

    const bool isMeasured = parser.isSet(QStringLiteral("contrast"));
    QJsonArray surfaces;
    QJsonArray contrasts;
    const QList<Gallery::Surface> all = Gallery::surfaces();
    for (const Gallery::Surface &surface : all) {
        const std::unique_ptr<QWidget> window = surface.show();
        save(*window, surface.name, folder);
        surfaces.append(surface.name);
        if (isMeasured)
            measure(*window, surface.name, contrasts);
    }

    QJsonArray controls;
    const QList<Gallery::Control> allControls = Gallery::controls();
    for (const Gallery::Control &control : allControls) {
        const std::unique_ptr<QWidget> window = control.show();
        const QString file = QString(control.name).replace(QLatin1Char(' '), QLatin1Char('-')) +
                             QLatin1Char('_') + control.state;
        save(*window, file, folder);
        controls.append(QJsonObject{{QStringLiteral("name"), control.name},
                                    {QStringLiteral("state"), control.state},
                                    {QStringLiteral("file"), file}});
        if (isMeasured)
            measure(*window, control.name + QStringLiteral(" : ") + control.state, contrasts);
    }

    QFile index(folder.filePath(QStringLiteral("index.json")));
    if (!index.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(index.fileName()));
    index.write(QJsonDocument(QJsonObject{{QStringLiteral("surfaces"), surfaces},
                                          {QStringLiteral("controls"), controls},
                                          {QStringLiteral("contrast"), contrasts}})
                    .toJson());
    return EXIT_SUCCESS;
}
