#include "tools/gallery/surfaces.h"

#include "config/content/configcontent.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "ui/splashwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QEventLoop>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QRadioButton>

namespace Gallery {

namespace {

template<typename Window>
std::unique_ptr<Window> shown(std::unique_ptr<Window> window)
{
    window->show();
    QApplication::setActiveWindow(window.get());
    // Twice: what becomes visible may ask for another layout.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    return window;
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void holdStill(QObject &owner)
{
    const QList<QTimer *> timers = owner.findChildren<QTimer *>();
    for (QTimer *timer : timers)
        timer->stop();
}

template<typename Page>
std::unique_ptr<MainWindow> wizardAt(Page *Ui_MainWindow::*page)
{
    auto window = std::make_unique<MainWindow>(nullptr);
    window->wizardPages->setCurrentWidget((*window).*page);
    return shown(std::move(window));
}

std::unique_ptr<QWidget> splash()
{
    auto window = std::make_unique<SplashWindow>(nullptr);
    window->setLayoutDirection(Qt::LeftToRight); // it is built before the language is set
    window = shown(std::move(window));
    holdStill(*window);
    return window;
}

std::unique_ptr<QWidget> feedback(int reason, const QString &description)
{
    auto window = wizardAt(&Ui_MainWindow::optionPage);
    OptionPage *page = window->optionPage;
    if (reason >= 0)
        page->scrollContents->findChildren<QRadioButton *>().at(reason)->setChecked(true);
    page->textEdit->setPlainText(description);
    return shown(std::move(window));
}

QList<Surface> feedbackSurfaces()
{
    QList<Surface> list{{QStringLiteral("feedback"), [] { return feedback(-1, QString()); }}};
    int reason = 0;
    const QList<QJsonObject> options = Config::problemTypeList();
    for (const QJsonObject &option : options) {
        if (Config::hasOptionType(option, {QStringLiteral("homepage")}))
            continue;
        const QString name =
            QStringLiteral("feedback-reason-%1").arg(option.value(QStringLiteral("value")).toInt());
        list.append({name, [reason] { return feedback(reason, QString()); }});
        if (Config::hasOptionType(option, {QStringLiteral("submit")})) {
            list.append({name + QStringLiteral("-described"), [reason] {
                             const QString line = QStringLiteral("1080p60 to MP4, H.264, 24 min\n");
                             return feedback(reason, line.repeated(4));
                         }});
        }
        ++reason;
    }
    return list;
}

std::unique_ptr<QWidget> confirmation(bool withResources)
{
    auto window = std::make_unique<ConfirmWindow>(nullptr);
    window->checkBox->setChecked(withResources);
    window->growToTexts();
    return shown(std::move(window));
}

std::unique_ptr<QWidget> message(const char *text)
{
    auto window = std::make_unique<MessageWindow>(nullptr);
    window->lblMessage->setText(QCoreApplication::translate("MainWindow", text));
    window->growToTexts();
    return shown(std::move(window));
}

std::unique_ptr<MainWindow> uninstalling(qint64 elapsedMs)
{
    auto window = wizardAt(&Ui_MainWindow::uninstallPage);
    UninstallPage *page = window->uninstallPage;
    page->start(nullptr);
    holdStill(*page);
    page->showElapsed(elapsedMs);
    return shown(std::move(window));
}

std::unique_ptr<QWidget> uninstalled(const QString &address)
{
    constexpr qint64 endMs = 30000;
    constexpr int untilSuccessShowsMs = 550;
    auto window = uninstalling(endMs);
    wait(untilSuccessShowsMs);
    UninstallPage *page = window->uninstallPage;
    if (!address.isEmpty()) {
        page->edtEmail->setText(address);
        page->btnSubscribe->click();
    }
    return shown(std::move(window));
}

std::unique_ptr<QWidget> failed()
{
    auto window = uninstalling(0);
    window->uninstallPage->fail();
    return shown(std::move(window));
}

std::unique_ptr<QWidget> upgrading(int percent)
{
    auto window = wizardAt(&Ui_MainWindow::upgradePage);
    window->upgradePage->showUpgrading();
    window->upgradePage->progressBar->setValue(percent);
    return shown(std::move(window));
}

std::unique_ptr<QWidget> upgradeCompleted()
{
    auto window = wizardAt(&Ui_MainWindow::upgradePage);
    window->upgradePage->showCompleted();
    return shown(std::move(window));
}

std::unique_ptr<QWidget> products(TabButton *Ui_ProductPage::*tab)
{
    auto window = wizardAt(&Ui_MainWindow::productPage);
    ((*window->productPage).*tab)->setChecked(true);
    return shown(std::move(window));
}

} // namespace

QList<Surface> surfaces()
{
    QList<Surface> list{{QStringLiteral("splash"), splash}};
    list += feedbackSurfaces();
    list += QList<Surface>{
        {QStringLiteral("confirmation"), [] { return confirmation(false); }},
        {QStringLiteral("confirmation-with-resources"), [] { return confirmation(true); }},
        {QStringLiteral("message-check-failed"), [] { return message("Failed to check update!"); }},
        {QStringLiteral("message-up-to-date"),
         [] { return message("You are already the latest version!"); }},
        {QStringLiteral("message-download-failed"),
         [] { return message("Failed to download the update."); }},
        {QStringLiteral("message-install-failed"), [] { return message("Install failed."); }},
        {QStringLiteral("upgrading"), [] { return upgrading(0); }},
        {QStringLiteral("upgrading-half"), [] { return upgrading(50); }},
        {QStringLiteral("upgrade-completed"), upgradeCompleted},
        {QStringLiteral("uninstalling"), [] { return uninstalling(100); }},
        {QStringLiteral("uninstalling-half"), [] { return uninstalling(15000); }},
        {QStringLiteral("uninstalling-nearly-done"), [] { return uninstalling(29900); }},
        {QStringLiteral("uninstalled"), [] { return uninstalled(QString()); }},
        {QStringLiteral("uninstalled-wrong-address"),
         [] { return uninstalled(QStringLiteral("someone@nowhere")); }},
        {QStringLiteral("uninstall-failed"), failed},
        {QStringLiteral("products"), [] { return products(&Ui_ProductPage::btnAll); }},
        {QStringLiteral("products-creativity"),
         [] { return products(&Ui_ProductPage::btnCreativity); }},
        {QStringLiteral("products-productivity"),
         [] { return products(&Ui_ProductPage::btnProductivity); }},
        {QStringLiteral("products-utility"), [] { return products(&Ui_ProductPage::btnUtility); }},
    };
    return list;
}

} // namespace Gallery
