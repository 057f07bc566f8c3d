#include "tests/monkey/life.h"

#include "analytics/session.h"
#include "tests/monkey/controlledclock.h"
#include "tests/monkey/eventcatalogue.h"
#include "tests/monkey/heldlibrary.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/literals.h"
#include "tests/support/mainwindowstate.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

#include <algorithm>
#include <csignal>
#include <initializer_list>
#include <unistd.h>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 20s; ///< of real time, for threads and processes

const auto stepEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

const QVector<const char *> checkAnswers{
    R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8.0.0.1","path":"%1"}})",
    R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8.0.0.1","path":"%1"}})",
    R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8","path":"/nowhere"}})",
    R"({"errcode":"0","result":{"needupgrade":"0"}})",
    R"({"errcode":"12","result":{"needupgrade":"1"}})",
    R"({"errcode":"99999999999999999999"})",
    R"({"errcode":"0","result":[1]})",
    "no JSON",
    ""};

const QVector<const char *> downloadAnswers{
    R"({"errcode":"0","result":{"downloaded":"1","path":"%1"}})",
    R"({"errcode":"0","result":{"downloaded":"1","path":"%1"}})",
    R"({"errcode":"-3","errmsg":"cannot copy"})", R"({"errcode":"5"})", "{\"errcode\":"};

/// The processes of which this one is the parent, as the system has them.
QList<qint64> childProcesses()
{
    // All are started by the first thread, whose number is that of the process.
    QFile file("/proc/self/task/%1/children"_s.arg(getpid()));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the system does not tell the children of a process");
    QList<qint64> children;
    const QList<QByteArray> numbers = file.readAll().simplified().split(' ');
    for (const QByteArray &number : numbers) {
        if (!number.isEmpty())
            children += number.toLongLong();
    }
    return children;
}

QList<QWidget *> visibleDialogs()
{
    QList<QWidget *> dialogs;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        const bool isDialog =
            qobject_cast<ConfirmWindow *>(window) || qobject_cast<MessageWindow *>(window);
        if (isDialog && window->isVisible())
            dialogs += window;
    }
    return dialogs;
}

QString firstBroken(std::initializer_list<std::pair<bool, const char *>> rules)
{
    const auto *broken =
        std::find_if(rules.begin(), rules.end(), [](const auto &rule) { return rule.first; });
    return broken == rules.end() ? QString() : QString::fromLatin1(broken->second);
}

QString nameOf(const QWidget *widget)
{
    QString name = QString::fromLatin1(widget->metaObject()->className());
    if (!widget->objectName().isEmpty())
        name += QLatin1Char(' ') + widget->objectName();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        name += " \"%1\""_s.arg(button->text().simplified());
    return name;
}

} // namespace

Life::Life(World &world, std::uint64_t seed, int maxSteps)
    : m_world(world)
    , m_random(seed)
    , m_maxSteps(maxSteps)
{
}

Life::~Life() = default;

void Life::live()
{
    m_world.reset();
    HeldLibrary::reset();
    AnalyticsRecord::restart();
    m_window = std::make_unique<MainWindow>(nullptr);
    watchHelper(); // after the window's own connections, which are called first
    watchProcesses();
    m_window->show();
    m_window->activateWindow();

    qApp->installEventFilter(this);
    const auto watch =
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
                &Life::rested, Qt::DirectConnection);
    QApplication::exec();
    disconnect(watch);
    qApp->removeEventFilter(this);
    QCoreApplication::removePostedEvents(this, stepEvent);
    windUp();
}

void Life::watchHelper()
{
    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    // From here on an answer may come from the other thread at any time.
    const auto count = [this](int &requests) {
        ++requests;
        m_isAwaiting = true;
    };
    connect(
        helper, &NvUpgradeHelper::s_checkUpgrade, this, [this, count] { count(m_checks); },
        Qt::DirectConnection);
    connect(
        helper, &NvUpgradeHelper::s_startDownloadPackage, this,
        [this, count] { count(m_downloads); }, Qt::DirectConnection);
    connect(helper, &NvUpgradeHelper::s_CheckFinish, this, [this](const checkOutParam &result) {
        ++m_answersHeard;
        m_offersHeard += result.errcode == 0 && result.needupgrade;
    });
    connect(helper, &NvUpgradeHelper::s_DownFinish, this, [this](bool isSuccess) {
        ++m_answersHeard;
        m_packagesHeard += isSuccess;
    });
}

void Life::watchProcesses()
{
    m_installer = installProcess(*m_window);
    m_uninstaller = uninstallProcess(*m_window);
    connect(m_installer, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        m_installerStarts += state == QProcess::Starting;
        m_installersStarted += state == QProcess::Running;
        m_isAwaiting = true; // the next change of state may come at any time
    });
    connect(m_uninstaller, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        m_uninstallersStarted += state == QProcess::Running;
        m_isAwaiting = true;
        if (state != QProcess::Starting)
            return;
        ++m_uninstallerStarts;
        if (m_random.oneIn(4)) {
            note("close while the uninstaller starts"_s);
            m_window->windowHandle()->close();
        }
    });
}

bool Life::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        if (auto *dialog = qobject_cast<ConfirmWindow *>(watched))
            watchAnswer(dialog);
    }
    return false;
}

void Life::watchAnswer(ConfirmWindow *dialog)
{
    auto isAnswered = std::make_shared<bool>(false);
    connect(dialog, &ConfirmWindow::closed, this, [this, dialog, isAnswered](int result) {
        if (std::exchange(*isAnswered, true))
            return;
        ++(result == 1 ? m_removesConfirmed : m_cancelsConfirmed);
        m_isResourceRemovalWanted = dialog->checkBox->isChecked();
    });
}

bool Life::event(QEvent *event)
{
    if (event->type() != stepEvent)
        return QObject::event(event);
    m_hasStepped = true;
    // Sometimes several steps without a rest between them.
    int left = m_random.oneIn(6) ? 2 + m_random.below(2) : 1;
    const int rests = m_rests;
    do
        step();
    while (--left > 0 && m_rests == rests && !m_isAwaiting && m_window->isVisible());
    m_hasStepped = true; // also when a dialog's loop ran in between
    return true;
}

/// Called whenever the innermost event loop is about to wait.
void Life::rested()
{
    if (m_isOver)
        return;
    if (!isSettled()) {
        const Milliseconds now = ControlledClock::realTime();
        if (!m_waitingSince)
            m_waitingSince = now;
        if (now - *m_waitingSince > patience)
            fail("a child or an answer never arrived"_s);
        return;
    }
    m_waitingSince.reset();
    if (std::exchange(m_hasStepped, false)) {
        // Let timers run, and loops return that were told to quit.
        QAbstractEventDispatcher::instance()->wakeUp();
        return;
    }

    const QString broken = brokenRule();
    if (!broken.isEmpty()) {
        fail(broken);
        return;
    }
    if (m_steps >= m_maxSteps) {
        m_isOver = true;
        QCoreApplication::quit();
        return;
    }
    ++m_rests;
    m_isAwaiting = false;
    QCoreApplication::postEvent(this, new QEvent(stepEvent));
}

bool Life::isSettled()
{
    if (m_uninstaller->state() == QProcess::Starting || m_installer->state() == QProcess::Starting)
        return false;
    if (m_isChildTold && isRunning())
        return false;
    m_isChildTold = false;
    if (!HeldLibrary::waitForCalls(m_checks + m_downloads, patience)) {
        fail("a request never reached the upgrade library"_s);
        return false;
    }
    return m_answersHeard == m_answersTold;
}

void Life::step()
{
    ++m_steps;
    const bool isCallOpen = HeldLibrary::current() != HeldLibrary::Call::None;
    const int draw = m_random.below(100);
    if (draw < 10)
        letTimePass();
    else if (draw < 13)
        changeWorld();
    else if (draw < 25)
        pressKey();
    else if (draw < 28)
        type();
    else if (draw < 30)
        closeFromWindowSystem();
    else if (draw < 39)
        useMouseAnywhere();
    else if (draw < 40)
        resizeWindow();
    else if (draw < 60 && isRunning())
        endChild();
    else if (draw < 80 && isCallOpen)
        answerLibrary();
    else
        click();
}

/// Mostly the window that takes input, sometimes the one behind it.
QWidget *Life::target()
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog && !m_random.oneIn(8) ? dialog : m_window.get();
}

void Life::click()
{
    QWidget *window = target();
    QVector<QWidget *> candidates;
    const QList<QWidget *> widgets = window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const bool isControl = widget->inherits("QAbstractButton") ||
                               widget->inherits("QLineEdit") || widget->inherits("QListWidget") ||
                               widget->inherits("QPlainTextEdit");
        if (isControl && widget->isVisible() && widget->window() == window)
            candidates += widget;
    }
    if (candidates.isEmpty())
        return;
    QWidget *widget = m_random.oneOf(candidates);
    const auto *button = qobject_cast<QAbstractButton *>(widget);
    const bool endsTheLife = button && (button->text() == "Cancel"_s ||
                                        button->text() == "Close"_s || button->text().isEmpty());
    if (endsTheLife && !m_random.oneIn(8))
        widget = m_random.oneOf(candidates);
    // Few of the reasons have an offer.
    if (m_window->optionPage->btnNext->isVisible() && m_random.oneIn(2))
        widget = m_window->optionPage->btnNext;

    QPoint position = widget->rect().center();
    if (auto *list = qobject_cast<QListWidget *>(widget)) {
        if (list->count() > 0)
            position = list->visualItemRect(list->item(m_random.below(list->count()))).center();
    }
    note("click "_s + nameOf(widget));
    clickAt(widget->window(), widget->mapTo(widget->window(), position));
}

void Life::useMouseAnywhere()
{
    QWidget *window = target();
    const QPoint position(m_random.below(window->width()), m_random.below(window->height()));
    const int draw = m_random.below(9);
    const auto what = draw < 6 ? "click"_s : draw < 8 ? "press"_s : "release"_s;
    note("%1 at %2, %3 of %4"_s.arg(what).arg(position.x()).arg(position.y()).arg(nameOf(window)));
    if (draw < 6)
        clickAt(window, position);
    else if (window->isVisible() && window->windowHandle() && draw < 8)
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
    else if (window->isVisible() && window->windowHandle())
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
}

// Through the window system's queue, so that modality and disabled windows count.
void Life::clickAt(QWidget *window, const QPoint &position)
{
    if (window->windowHandle() && window->isVisible() && window->rect().contains(position))
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
}

void Life::pressKey()
{
    static const QVector<Qt::Key> keys{
        Qt::Key_Tab,   Qt::Key_Tab,  Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space,
        Qt::Key_Space, Qt::Key_Down, Qt::Key_Escape, Qt::Key_Up,      Qt::Key_Return,
        Qt::Key_Enter, Qt::Key_Left, Qt::Key_Home,   Qt::Key_Delete,  Qt::Key_Right};
    const Qt::Key key = m_random.oneOf(keys);
    QWidget *window = target();
    note("key %1"_s.arg(QKeySequence(key).toString()));
    if (window->windowHandle() && window->isVisible())
        QTest::keyClick(window->windowHandle(), key);
}

void Life::type()
{
    static const QVector<QString> texts{"slow"_s,
                                        "robin@mail.example"_s,
                                        "robin@@mail"_s,
                                        " \"}\\{<b>%1&\n\t"_s,
                                        QString(1500, QLatin1Char('x')),
                                        "日本語 \U0001F600"_s};
    const QString text = m_random.oneOf(texts);
    note("paste %1 characters"_s.arg(text.size()));
    QWidget *focused = QApplication::focusWidget();
    if (auto *edit = qobject_cast<QPlainTextEdit *>(focused))
        edit->insertPlainText(text);
    else if (auto *line = qobject_cast<QLineEdit *>(focused))
        line->insert(text);
}

void Life::closeFromWindowSystem()
{
    // The window system's close does not reach a window behind a modal dialog.
    QWidget *dialog = QApplication::activeModalWidget();
    QWidget *window = dialog ? dialog : m_window.get();
    note("close "_s + nameOf(window));
    if (window->windowHandle())
        window->windowHandle()->close();
}

void Life::letTimePass()
{
    static const QVector<int> times{1, 50, 100, 500, 500, 1000, 5000, 15000, 30000, 30000};
    const int time = m_random.oneOf(times);
    note("%1 ms pass"_s.arg(time));
    ControlledClock::advance(Milliseconds(time));
}

void Life::endChild()
{
    const QProcess *process =
        m_uninstaller->state() == QProcess::Running ? m_uninstaller : m_installer;
    static const QVector<int> codes{0, 0, 0, 1, 5, 255, -1};
    const int code = m_random.oneOf(codes);
    if (code < 0) {
        note("the child is killed"_s);
        kill(static_cast<pid_t>(process->processId()), SIGKILL);
    } else {
        note("the child ends with %1"_s.arg(code));
        m_world.tellChild(code);
    }
    m_isChildTold = true;
    m_isAwaiting = true;
}

void Life::answerLibrary()
{
    const bool isDownload = HeldLibrary::current() == HeldLibrary::Call::Download;
    if (m_answersTold > m_answersHeard)
        return; // told already
    if (isDownload && !m_random.oneIn(3)) {
        static const QVector<int> percents{-5, 0, 1, 40, 98, 99, 100, 250};
        const int percent = m_random.oneOf(percents);
        note("the download reports %1"_s.arg(percent));
        HeldLibrary::reportProgress(percent);
        return;
    }
    QByteArray json = m_random.oneOf(isDownload ? downloadAnswers : checkAnswers);
    note("the library answers %1"_s.arg(QLatin1String(json)));
    json.replace("%1", QFile::encodeName(m_world.updateDescription()));
    ++m_answersTold;
    HeldLibrary::answer(json.toStdString());
    m_isAwaiting = true;
}

void Life::changeWorld()
{
    using Condition = World::Condition;
    static const QVector<World::Program> programs{
        World::Program::Uninstaller, World::Program::UpdateInstaller, World::Program::Product};
    static const QVector<Condition> conditions{Condition::Whole, Condition::Whole,
                                               Condition::Missing, Condition::Unstartable};
    const int what = m_random.below(5);
    const int how = m_random.below(conditions.size());
    note("world %1 %2"_s.arg(what).arg(how));
    if (what < programs.size())
        m_world.set(programs.at(what), conditions.at(how));
    else if (what == programs.size())
        m_world.setRegistered(!m_random.oneIn(3));
    else
        m_world.setOnline(m_random.oneIn(2));
}

void Life::resizeWindow()
{
    note("resize"_s);
    m_window->resize(720 + m_random.below(100), 480 + m_random.below(100));
}

bool Life::isRunning() const
{
    return m_uninstaller->state() == QProcess::Running || m_installer->state() == QProcess::Running;
}

/// What must hold whenever the window has come to rest.
QString Life::brokenRule()
{
    QString flawedEvent = readEvents();
    if (!flawedEvent.isEmpty())
        return flawedEvent;

    const auto isUnknown = [this](qint64 child) {
        return child != m_uninstaller->processId() && child != m_installer->processId();
    };
    const QList<qint64> children = childProcesses();
    const bool isUninstalling = m_uninstaller->state() == QProcess::Running;
    const bool isInstalling = m_installer->state() == QProcess::Running;

    const QList<QWidget *> dialogs = visibleDialogs();
    const bool hasMessage = !dialogs.isEmpty() && qobject_cast<MessageWindow *>(dialogs.first());
    const QWidget *layer = overlay(*m_window);
    const bool isChecking = m_checks + m_downloads > m_answersTold && m_checks > m_offersHeard &&
                            HeldLibrary::current() == HeldLibrary::Call::Check;

    const UpgradePage *upgradePage = m_window->upgradePage;
    const UninstallPage *uninstallPage = m_window->uninstallPage;
    const QWidget *page = m_window->wizardPages->currentWidget();

    return firstBroken({
        {children.size() > 1, "a second child"},
        {std::any_of(children.begin(), children.end(), isUnknown), "a child of another origin"},
        {m_uninstallerStarts > m_removesConfirmed, "an uninstaller without a confirmed Remove"},
        {m_uninstallerStarts > 1, "a second start of the uninstaller"},
        {m_installerStarts > m_packagesHeard, "an update installer without a downloaded package"},
        {HeldLibrary::mostAtATime() > 1, "two calls of the upgrade library at a time"},
        {m_downloads != m_offersHeard, "downloads that are not one for each offer"},

        {dialogs.size() > 1, "two dialogs at a time"},
        {layer->isVisible() == dialogs.isEmpty(), "an overlay without a dialog, or the reverse"},
        {layer->isVisible() && layer->geometry() != m_window->rect(),
         "an overlay that does not cover the window"},
        {!m_window->isEnabled() && !isChecking && !hasMessage, "a window that is left disabled"},
        {m_window->isEnabled() && isChecking, "a window that is enabled during a check"},

        {!m_window->isVisible(), "a program that goes on without its window"},
        {m_removesConfirmed > 0 && page != uninstallPage && page != m_window->productPage,
         "a way back after Remove"},
        {isUninstalling && (page != uninstallPage || !uninstallPage->isRunning()),
         "a run of the uninstaller that is not shown"},
        {isInstalling && (page != upgradePage || !upgradePage->isActionDisabled()),
         "an installation that is not shown, or may be left"},
        {m_installer->state() == QProcess::NotRunning && dialogs.isEmpty() &&
             upgradePage->isActionDisabled(),
         "an upgrade page that cannot be left"},
        {uninstallPage->isRunning() && m_removesConfirmed == 0,
         "a run that is shown without a confirmed Remove"},
        {m_window->optionPage->textEdit->toPlainText().size() > 1000, "too long a text"},
        // The end of the program counts as a Cancel as well, but this is not the end.
        {m_cancelEvents != m_cancelsConfirmed, "Cancel events that are not one for each Cancel"},
    });
}

/// Reads the events that were added, counts them, and tells what is wrong with them.
QString Life::readEvents()
{
    const QList<QJsonObject> calls = AnalyticsRecord::calls();
    for (; m_eventsRead < calls.size(); ++m_eventsRead) {
        const QJsonObject &call = calls.at(m_eventsRead);
        if (call.value("call"_s) != "data_event"_s)
            continue;
        const QString flaw = EventCatalogue::flawOf(call);
        const QString text = QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact));
        if (!flaw.isEmpty())
            return flaw + ": "_s + text;
        mix(text);
        const QString action = call.value("action"_s).toString();
        const QString properties = call.value("properties"_s).toString();
        m_uninstallResults +=
            action == "UninstallCompleted"_s && !properties.contains("ButtonClick"_s);
        m_launchEvents += action == "UpgradeSuccess_launchclick"_s;
        if (action == "UninstallReConfirm"_s)
            ++(properties.contains("\"Remove\""_s) ? m_removeEvents : m_cancelEvents);
    }
    return firstBroken({
        {m_removeEvents != m_removesConfirmed, "Remove events that are not one for each Remove"},
        {m_uninstallResults > m_removesConfirmed, "more results than runs"},
    });
}

/// Once everything is over.
QString Life::flawOfRecord() const
{
    int uninstallers = 0;
    int installers = 0;
    int launches = 0;
    const QString uninstallerArguments = m_isResourceRemovalWanted
                                             ? "/VERYSILENT|/REINSTALL|/DELRESOURCE"_s
                                             : "/VERYSILENT|/REINSTALL"_s;
    const QStringList lines = m_world.record();
    for (const QString &line : lines) {
        if (line == "launched"_s)
            ++launches;
        else if (line == uninstallerArguments)
            ++uninstallers;
        else if (line.startsWith("/CFGPATH=\""_s) && line.count(QLatin1Char('|')) == 7)
            ++installers;
        else
            return "unexpected arguments: "_s + line;
    }
    // A child may have been killed before it wrote its line.
    if (uninstallers > m_uninstallersStarted || installers > m_installersStarted ||
        launches > m_launchEvents)
        return "more programs ran than were started"_s;
    return {};
}

/// Ends what still runs, and checks what must hold at the end of the program.
void Life::windUp()
{
    if (m_flaw.isEmpty() && !m_isOver && isRunning())
        m_flaw = "the program ends while a child of its runs"_s;
    if (m_flaw.isEmpty() && m_window->isVisible() && !m_isOver)
        mix("quit"_s);
    for (QProcess *process : {m_uninstaller, m_installer}) {
        disconnect(process, nullptr, this, nullptr);
        process->disconnect(m_window.get());
        if (process->state() != QProcess::NotRunning) {
            process->kill();
            process->waitForFinished(-1);
        }
    }
    if (m_flaw.isEmpty())
        m_flaw = readEvents();
    m_window.reset();

    HeldLibrary::waitForCalls(m_checks + m_downloads, patience);
    if (HeldLibrary::current() != HeldLibrary::Call::None && m_answersTold == m_answersHeard)
        HeldLibrary::answer("{\"errcode\":\"-2\"}");
    NvUpgradeHelper::release();
    if (m_flaw.isEmpty())
        m_flaw = flawOfRecord();
    mix(QString::number(m_steps));
}

void Life::fail(const QString &flaw)
{
    m_flaw = flaw;
    m_isOver = true;
    QCoreApplication::quit();
}

void Life::note(const QString &text)
{
    m_trace += text;
    mix(text);
    mix(QString::number(m_window->wizardPages->currentIndex()));
}

void Life::mix(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    for (const char byte : bytes)
        m_digest = (m_digest ^ static_cast<unsigned char>(byte)) * 1099511628211U;
}
