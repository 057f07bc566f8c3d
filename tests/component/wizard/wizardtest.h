#pragma once

#include "tests/support/analyticsrecord.h"
#include "tests/support/feed.h"
#include "tests/support/literals.h"
#include "tests/support/mainwindowstate.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"

#include <QtTest/QTest>
#include <QtWidgets/QRadioButton>

#include <functional>
#include <memory>
#include <optional>

/// Answers the window's message boxes as a user does, and keeps what they were like.
class Messages : public QObject
{
public:
    struct Message
    {
        QString text;
        bool isUsable; ///< enabled, modal, the window's, centred on it and over its overlay
        bool isWindowEnabled;
        bool isActionEnabled;
        QWidget *page;
        QStringList actions; ///< events so far
    };

    explicit Messages(const MainWindow &window);

    QStringList texts() const;

    QList<Message> all;
    /// Runs before OK is pressed.
    std::function<void(MessageWindow &)> whileOpen;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(MessageWindow &message);

    const MainWindow &m_window;
};

/// Base of the wizard's tests: a main window, shown, on a sample installation of its own with an
/// uninstaller, an update installer and an upgrade on offer; the events are recorded.
class WizardTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

public:
    /// For a row of test data: changes the feed or the installation; answers the last question.
    using Preparation = void (*)(const WizardTest &);
    using Answer = void (*)(ConfirmWindow &);

    const Feed &feed() const { return *m_feed; }
    const SampleInstallation &installation() const { return *m_feed->sandbox().operator->(); }
    QString installFile(const QString &name) const;
    void registerFolder(const QString &folder) const;

protected:
    /// Called before the window is made.
    virtual void prepareInstallation() {}

    MainWindow &window() const { return *m_window; }
    QWidget *page() const { return window().wizardPages->currentWidget(); }
    Messages &messages() { return *m_messages; }
    void destroyWindow();
    void closeFromTheWindowSystem() const { window().windowHandle()->close(); }

    void chooseReason(const QString &title) const;
    void takeOffer() const;

    static void pressRemove(ConfirmWindow &dialog) { dialog.btnRemove->click(); }

    /// Presses Continue and answers the question that follows.
    void answerQuestion(const std::function<void(ConfirmWindow &)> &answer = pressRemove) const;

    /// The next warning that a process was destroyed while it ran is expected.
    static void expectKilledProcess();

private:
    std::optional<Feed> m_feed;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Messages> m_messages;
};

Q_DECLARE_METATYPE(WizardTest::Preparation)
Q_DECLARE_METATYPE(WizardTest::Answer)
