// Links and file names, on their way to names in the cache and to style sheets.

#include "config/content/configcontent.h"
#include "tests/fuzz/target.h"
#include "tests/support/sandbox.h"
#include "ui/look.h"

#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

namespace {

const Sandbox *sandbox;

void requireNameInFolder(const QString &name)
{
    Fuzz::require(!name.contains(QLatin1Char('/')) && !name.contains(QDir::separator()),
                  "a name has no folder in it");
    Fuzz::require(!name.contains(QLatin1String("..")) || name.endsWith(QLatin1String("..")),
                  "a name leads nowhere else");
    Fuzz::require(name.startsWith(QLatin1String("pid_")) ||
                      name.startsWith(QLatin1String("option_")),
                  "a name is not that of a device");
}

} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    new QApplication(*argc, *argv);
    sandbox = new Sandbox(Sandbox::Content::Nothing);
    qAddPostRoutine([] { delete sandbox; });
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString link = QString::fromUtf8(Fuzz::bytes(data, size));
    const QJsonObject product{{QStringLiteral("pid"), 12}, {QStringLiteral("icon"), link}};
    const QJsonObject option{{QStringLiteral("value"), 12}, {QStringLiteral("banner_url"), link}};
    if (!link.isEmpty()) {
        requireNameInFolder(Config::productPicture(product).fileName);
        requireNameInFolder(Config::optionPicture(option).fileName);
    }
    Fuzz::require(Config::productIconPath(product) ==
                      QLatin1String(":/Resources/light/ico_default_2x.png"),
                  "a picture that is not there is the default one");

    // No path gives the widget more than a picture, or its children anything.
    static QWidget panel;
    static QLabel child(&panel);
    panel.ensurePolished();
    const int width = panel.minimumWidth();
    panel.setStyleSheet(Look::pictureStyle(link));
    panel.ensurePolished();
    child.ensurePolished();
    Fuzz::require(panel.minimumWidth() == width && child.minimumWidth() == 0 &&
                      child.objectName().isEmpty() && child.text().isEmpty(),
                  "a path adds no rule to a style sheet");
    return 0;
}
