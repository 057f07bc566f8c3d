// Renders every page and state that shows a configuration document's texts, as the program would
// with this document downloaded, into a folder of pictures; index.json there says what is on them.

#include "config/content/configcontent.h"
#include "config/download/configdownloader.h"
#include "tests/support/interfacelanguage.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tools/gallery/contrast.h"
#include "tools/gallery/surfaces.h"
#include "tools/gallery/textfit.h"
#include "ui/systemlook.h"
#include "wizard/mainwindow.h"

#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollBar>

#include <cstdlib>

namespace {

constexpr int downloadMs = 10000; // the program waits no longer either

QList<Config::Picture> bannersOf(const QJsonObject &document)
{
    QList<Config::Picture> list;
    const QList<QJsonObject> options = Config::jsonObjectList(
        document.value(QStringLiteral("problem_type")).toObject(), QStringLiteral("list"));
    for (const QJsonObject &option : options)
        list += Config::optionPicture(option);
    return list;
}

QList<Config::Picture> picturesOf(const QJsonObject &document)
{
    QList<Config::Picture> list = bannersOf(document);
    const QList<QJsonObject> categories = Config::jsonObjectList(document, QStringLiteral("apps"));
    for (const QJsonObject &category : categories) {
        const QList<QJsonObject> products =
            Config::jsonObjectList(category, QStringLiteral("list"));
        for (const QJsonObject &product : products)
            list += Config::productPicture(product);
    }
    return list;
}

// Under its name in the link, or under that in which the program keeps it.
void takePictures(const QJsonObject &document, const QDir &folder)
{
    const QList<Config::Picture> pictures = picturesOf(document);
    for (const Config::Picture &picture : pictures) {
        for (const QString &name : {QFileInfo(picture.link).fileName(), picture.fileName}) {
            if (!picture.fileName.isEmpty() && QFileInfo(folder, name).isFile() &&
                QFile::copy(folder.filePath(name),
                            Config::imagesDir() + QLatin1Char('/') + picture.fileName))
                break;
        }
    }
}

void fetchPictures(ConfigDownloader &downloader)
{
    QEventLoop loop;
    QObject::connect(&downloader, &ConfigDownloader::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(downloadMs, &loop, &QEventLoop::quit);
    QTimer::singleShot(0, &downloader, &ConfigDownloader::checkItems);
    loop.exec();
    downloader.abort();
}

void keepBanners(const QJsonObject &document, const QDir &folder)
{
    const QList<Config::Picture> banners = bannersOf(document);
    for (const Config::Picture &banner : banners) {
        if (!banner.fileName.isEmpty())
            QFile::copy(Config::imagesDir() + QLatin1Char('/') + banner.fileName,
                        folder.filePath(banner.fileName));
    }
}

QJsonArray place(const QWidget &widget, const QRect &rect)
{
    const QPoint at = widget.mapTo(widget.window(), rect.topLeft());
    return {at.x(), at.y(), rect.width(), rect.height()};
}

QJsonArray textsOf(const QWidget &window)
{
    QJsonArray list;
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const QString text = Gallery::shownText(*widget);
        const QRect seen = widget->visibleRegion().boundingRect();
        if (!widget->isVisible() || text.trimmed().isEmpty() || seen.isEmpty())
            continue;
        list.append(QJsonObject{{QStringLiteral("text"), text},
                                {QStringLiteral("place"), place(*widget, seen)},
                                {QStringLiteral("misfit"), Gallery::textMisfit(*widget)}});
    }
    return list;
}

// The pages show the built-in picture in its place.
void addIfMissing(const Config::Picture &picture, const QWidget &widget, const QRect &rect,
                  QJsonArray &list)
{
    const bool isThere = !picture.fileName.isEmpty() &&
                         QFile::exists(Config::imagesDir() + QLatin1Char('/') + picture.fileName);
    if (!isThere)
        list.append(QJsonObject{{QStringLiteral("link"), picture.link},
                                {QStringLiteral("place"), place(widget, rect)}});
}

QJsonObject optionShown(const OptionPage &page)
{
    const QList<QRadioButton *> reasons = page.findChildren<QRadioButton *>();
    for (const QRadioButton *reason : reasons) {
        if (reason->isChecked())
            return reason->property("problemObj").toJsonObject();
    }
    QJsonObject shown;
    const QList<QJsonObject> options = Config::problemTypeList();
    for (const QJsonObject &option : options) {
        if (Config::hasOptionType(option, {QStringLiteral("homepage")}))
            shown = option;
    }
    return shown;
}

QJsonArray missingOn(const MainWindow &window)
{
    QJsonArray list;
    const OptionPage *page = window.optionPage;
    if (page->isVisible())
        addIfMissing(Config::optionPicture(optionShown(*page)), *page->pnlLeft,
                     page->pnlLeft->rect(), list);
    const QList<QListWidget *> products = window.findChildren<QListWidget *>();
    for (const QListWidget *view : products) {
        for (int i = 0; view->isVisible() && i < view->count(); ++i) {
            const QRect tile =
                view->visualItemRect(view->item(i)).intersected(view->viewport()->rect());
            if (!tile.isEmpty())
                addIfMissing(
                    Config::productPicture(view->item(i)->data(Qt::UserRole).toJsonObject()),
                    *view->viewport(), tile, list);
        }
    }
    return list;
}

QScrollBar *scrollBar(const MainWindow &window)
{
    const QList<QScrollBar *> bars = window.findChildren<QScrollBar *>();
    for (QScrollBar *bar : bars) {
        if (bar->isVisible() && bar->orientation() == Qt::Vertical &&
            !qobject_cast<QPlainTextEdit *>(bar->parentWidget()->parentWidget()))
            return bar;
    }
    return nullptr;
}

// What a user scrolls to is on further pictures.
void render(MainWindow &window, const QString &name, const QDir &folder, QJsonArray &list)
{
    QScrollBar *bar = scrollBar(window);
    if (bar)
        bar->setValue(0);
    for (int part = 1;; ++part) {
        const QString title = part == 1 ? name : QStringLiteral("%1, scrolled").arg(name);
        const QString file = QStringLiteral("%1-%2.png").arg(name).arg(part);
        if (!window.grab().save(folder.filePath(file)))
            qFatal("cannot write %s", qPrintable(folder.filePath(file)));
        list.append(QJsonObject{{QStringLiteral("title"), title},
                                {QStringLiteral("file"), file},
                                {QStringLiteral("width"), window.width()},
                                {QStringLiteral("height"), window.height()},
                                {QStringLiteral("texts"), textsOf(window)},
                                {QStringLiteral("missing"), missingOn(window)}});
        if (!bar || bar->value() == bar->maximum())
            return;
        bar->setValue(bar->value() + bar->pageStep());
        QCoreApplication::processEvents();
    }
}

QJsonArray renderAll(const QDir &folder)
{
    QJsonArray list;
    const QList<Gallery::Surface> surfaces = Gallery::surfaces();
    for (const Gallery::Surface &surface : surfaces) {
        const std::unique_ptr<QWidget> window = surface.show();
        auto *wizard = qobject_cast<MainWindow *>(window.get());
        if (wizard && wizard->wizardPages->currentWidget() != wizard->upgradePage)
            render(*wizard, surface.name, folder, list);
    }
    return list;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4)
        qFatal("usage: render-preview FOLDER LANGUAGE DOCUMENT [PICTURES]");

    const QDir folder(arguments.at(1));
    QApplication::setCursorFlashTime(0); // or pictures differ by a caret
    const Sandbox sandbox;
    const LinkCatcher links;
    const InterfaceLanguage language(*sandbox.operator->(), arguments.at(2));
    const LookApplied look(SystemLook::rules());

    const QJsonObject document =
        QJsonDocument::fromJson(Sandbox::readFile(arguments.at(3))).object();
    ConfigDownloader downloader;
    const bool isTaken = downloader.collectImages(document);
    QJsonArray pictures;
    if (isTaken) {
        QFile kept(Config::configFilePath());
        if (!kept.open(QIODevice::WriteOnly) || kept.write(QJsonDocument(document).toJson()) <= 0)
            qFatal("cannot write %s", qPrintable(kept.fileName()));
        kept.close();
        if (arguments.size() > 4)
            takePictures(document, QDir(arguments.at(4)));
        else
            fetchPictures(downloader);
        keepBanners(document, folder);
        pictures = renderAll(folder);
    }

    QFile index(folder.filePath(QStringLiteral("index.json")));
    if (!index.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(index.fileName()));
    index.write(QJsonDocument(QJsonObject{{QStringLiteral("isTaken"), isTaken},
                                          {QStringLiteral("pictures"), pictures}})
                    .toJson());
    return EXIT_SUCCESS;
}
