#include "tests/component/wizard/wizardtest.h"

#include "upgrade/nvupgradehelper.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <nvupgrade.h>

Messages::Messages(const MainWindow &window)
    : m_window(window)
{
    qApp->installEventFilter(this);
}

QStringList Messages::texts() const
{
    QStringList texts;
    for (const Message &message : all)
        texts += message.text;
    return texts;
}

bool Messages::eventFilter(QObject *watched, QEvent *event)
{
    auto *message = qobject_cast<MessageWindow *>(watched);
    if (message && event->type() == QEvent::Show && !event->spontaneous())
        QTimer::singleShot(0, message, [this, message] { answer(*message); });
    return false;
}

void Messages::answer(MessageWindow &message)
{
    const QWidget *layer = overlay(m_window);
    all += {message.lblMessage->text(),
            message.isEnabled() && message.isModal() && message.parent() == &m_window &&
                message.btnOk->isEnabled() && layer->isVisible() &&
                layer->geometry() == m_window.rect() &&
                message.geometry().center() == m_window.geometry().center(),
            m_window.isEnabled(),
            m_window.upgradePage->btnCancel->isEnabled(),
            m_window.wizardPages->currentWidget(),
            AnalyticsRecord::actions()};
    if (whileOpen)
        whileOpen(message);
    if (message.btnOk->isEnabled())
        message.btnOk->click();
    else
        Q_EMIT message.closed(); // unusable, which is a failure and need not be a hang
}

void WizardTest::init()
{
    m_feed.emplace(Sandbox::Content::Installation);
    m_feed->writeSmallUpgrade("8.0.0.1"_s);
    QVERIFY(installation().writeUpdateInstaller({}));
    QVERIFY(installation().writeUninstaller(0, {}));
    prepareInstallation();
    AnalyticsRecord::restart();
    m_window = std::make_unique<MainWindow>(nullptr);
    m_messages = std::make_unique<Messages>(*m_window);
    m_window->show();
}

void WizardTest::cleanup()
{
    if (m_window && QTest::currentTestFailed()) {
        // A child that still runs is killed then, which Qt warns of.
        for (QProcess *process : m_window->findChildren<QProcess *>())
            process->kill();
    }
    destroyWindow();
    ::stop(); // a call that a failed test left in progress would keep the helper for good
    NvUpgradeHelper::release();
    m_feed.reset();
}

void WizardTest::destroyWindow()
{
    m_messages.reset();
    m_window.reset();
}

QString WizardTest::installFile(const QString &name) const
{
    return installation().installDir() + QLatin1Char('/') + name;
}

void WizardTest::registerFolder(const QString &folder) const
{
    installation().setSystemValue("HKEY_CLASSES_ROOT/NCPFile/path"_s, folder);
}

void WizardTest::chooseReason(const QString &title) const
{
    const QList<QRadioButton *> reasons = window().optionPage->findChildren<QRadioButton *>();
    const auto reason = std::find_if(reasons.begin(), reasons.end(), [&title](QRadioButton *each) {
        return each->accessibleName() == title;
    });
    if (reason == reasons.end())
        qFatal("no reason \"%s\"", qPrintable(title));
    (*reason)->setChecked(true);
}

void WizardTest::takeOffer() const
{
    chooseReason("My version is out of date"_s);
    window().optionPage->btnNext->click();
}

void WizardTest::answerQuestion(const std::function<void(ConfirmWindow &)> &answer) const
{
    if (!window().optionPage->btnContinue->isEnabled())
        chooseReason("Other"_s);
    QTimer::singleShot(0, &window(),
                       [this, answer] { answer(*window().findChild<ConfirmWindow *>()); });
    window().optionPage->btnContinue->click();
}

void WizardTest::expectKilledProcess()
{
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression("QProcess: Destroyed while process .* is still running\\."_s));
}
