// Bytes as the configuration server may send them, on their way to the finished pages: the file is
// read, the pictures are queued, the pages are made, every reason and every tab is chosen and every
// product clicked.

#include "analytics/session.h"
#include "config/content/configcontent.h"
#include "config/download/configdownloader.h"
#include "tests/fuzz/target.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/sandbox.h"
#include "ui/optionpage.h"
#include "ui/productpage.h"
#include "ui/uninstallpage.h"

#include <QtCore/QJsonDocument>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

// Qt defines __has_feature for compilers that lack it.
#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
#define LOOKS_FOR_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace {

/// The framework's JSON parser itself leaks a little when some broken documents end.
QJsonObject readWithoutLookingForLeaks(const QString &fileName)
{
#ifdef LOOKS_FOR_LEAKS
    const __lsan::ScopedDisabler disabler;
#endif
    return Config::readDocument(fileName).object();
}

// Deleted with the application object. The fuzzer deletes neither.
const Sandbox *sandbox;
const LinkCatcher *links;

void clickProducts(ProductList *list)
{
    for (int i = 0; i < list->count(); ++i) {
        list->itemWidget(list->item(i)); // which no hidden page has made yet
        Q_EMIT list->itemClicked(list->item(i));
    }
}

} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    new QApplication(*argc, *argv);
    sandbox = new Sandbox(Sandbox::Content::Nothing);
    links = new LinkCatcher;
    Analytics::initAnalytics();
    qAddPostRoutine([] {
        delete links;
        delete sandbox;
    });
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    sandbox->writeFile(QStringLiteral("document.cfg"), Fuzz::bytes(data, size));
    const QJsonObject document =
        readWithoutLookingForLeaks(sandbox->path(QStringLiteral("document.cfg")));
    const QString list = QStringLiteral("list");
    const auto listIn = [&](const char *key) {
        return Config::jsonObjectList(document.value(QLatin1String(key)).toObject(), list);
    };
    const QList<QJsonObject> options = listIn("problem_type");

    ConfigDownloader downloader;
    Fuzz::require(downloader.collectImages(document) == !options.isEmpty(),
                  "a document is saved when it has options");

    if (document.isEmpty())
        return 0; // pages without content are the same every time

    OptionPage optionPage(nullptr, options);
    const QList<QRadioButton *> reasons = optionPage.findChildren<QRadioButton *>();
    Fuzz::require(reasons.size() <= options.size(), "no more reasons than options");
    for (QRadioButton *reason : reasons) {
        reason->setChecked(true);
        Fuzz::require(optionPage.btnContinue->isEnabled(), "a chosen reason enables Continue");
    }

    UninstallPage uninstallPage(nullptr, listIn("recommended"));
    clickProducts(uninstallPage.lstProduct);

    ProductPage productPage(nullptr, Config::jsonObjectList(document, QStringLiteral("apps")));
    for (QPushButton *tab : {productPage.btnCreativity, productPage.btnProductivity,
                             productPage.btnUtility, productPage.btnAll}) {
        tab->setChecked(true);
        clickProducts(productPage.lstProduct);
    }
    return 0;
}
