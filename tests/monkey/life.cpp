#include "tests/monkey/life.h"

#include "analytics/session.h"
#include "tests/monkey/controlledclock.h"
#include "tests/monkey/eventcatalogue.h"
#include "tests/monkey/heldlibrary.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/mainwindowstate.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

#include <csignal>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 20s; ///< of real time, for threads and processes

const auto stepEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

struct Answer
{
    const char *json;
    bool isSuccess; ///< what is no JSON counts as one, without data
    bool isOffer;
};

const QVector<Answer> checkAnswers{
    {R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8.0.0.1","path":"%1"}})", true,
     true},
    {R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8.0.0.1","path":"%1"}})", true,
     true},
    {R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8","path":"/nowhere"}})", true,
     true},
    {R"({"errcode":"0","result":{"needupgrade":"0"}})", true, false},
    {R"({"errcode":"12","result":{"needupgrade":"1"}})", false, false},
    {R"({"errcode":"99999999999999999999"})", false, false},
    {R"({"errcode":"0","result":[1]})", true, false},
    {"no JSON", true, false},
    {"", true, false}};

const QVector<Answer> downloadAnswers{
    {R"({"errcode":"0","result":{"downloaded":"1","path":"%1"}})", true, false},
    {R"({"errcode":"0","result":{"downloaded":"1","path":"%1"}})", true, false},
    {R"({"errcode":"-3","errmsg":"cannot copy"})", false, false},
    {R"({"errcode":"5"})", false, false},
    {"{\"errcode\":", true, false}};

/// The processes of which this one is the parent, as the system has them.
QList<qint64> childProcesses()
{
    // All are started by the first thread, whose number is that of the process.
    QFile file(QStringLiteral("/proc/self/task/%1/children").arg(getpid()));
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

QString nameOf(const QWidget *widget)
{
    QString name = QString::fromLatin1(widget->metaObject()->className());
    if (!widget->objectName().isEmpty())
        name += QLatin1Char(' ') + widget->objectName();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        name += QStringLiteral(" \"%1\"").arg(button->text().simplified());
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
    watchHelper(); // after the window, so that it has heard of whatever is heard here
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
    // From here on the other thread takes its time.
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
        m_isAwaiting = true; // from here on the system takes its time
    });
    connect(m_uninstaller, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        m_uninstallersStarted += state == QProcess::Running;
        m_isAwaiting = true;
        if (state != QProcess::Starting)
            return;
        ++m_uninstallerStarts;
        if (m_random.oneIn(4)) {
            note(QStringLiteral("close while the uninstaller starts"));
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
    // Now and then several steps with no rest between them.
    int left = m_random.oneIn(6) ? 2 + m_random.below(2) : 1;
    const int rests = m_rests;
    do
        step();
    while (--left > 0 && m_rests == rests && !m_isAwaiting && m_window->isVisible());
    m_hasStepped = true; // also when a dialog's loop ran in between
    return true;
}

/// Called whenever the event loop, the innermost one, has nothing to do but wait.
void Life::rested()
{
    if (m_isOver)
        return;
    if (!isSettled()) {
        const Milliseconds now = ControlledClock::realTime();
        if (!m_waitingSince)
            m_waitingSince = now;
        if (now - *m_waitingSince > patience)
            fail(QStringLiteral("a child or an answer never arrived"));
        return;
    }
    m_waitingSince.reset();
    if (std::exchange(m_hasStepped, false)) {
        // Timers come first, and loops that were told to end.
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
        fail(QStringLiteral("a request never reached the upgrade library"));
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
    else if (draw < 33)
        pressOrRelease();
    else if (draw < 34)
        resizeWindow();
    else if (draw < 40)
        clickAnywhere();
    else if (draw < 60 && isRunning())
        endChild();
    else if (draw < 80 && isCallOpen)
        answerLibrary();
    else
        click();
}

/// Mostly the window that takes input now, sometimes the one behind it.
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
    const bool endsTheLife =
        button && (button->text() == QLatin1String("Cancel") ||
                   button->text() == QLatin1String("Close") || button->text().isEmpty());
    if (endsTheLife && !m_random.oneIn(8))
        widget = m_random.oneOf(candidates);
    // Of the many reasons on its page few lead on.
    if (m_window->optionPage->btnNext->isVisible() && m_random.oneIn(4))
        widget = m_window->optionPage->btnNext;

    QPoint position = widget->rect().center();
    if (auto *list = qobject_cast<QListWidget *>(widget)) {
        if (list->count() > 0)
            position = list->visualItemRect(list->item(m_random.below(list->count()))).center();
    }
    note(QStringLiteral("click ") + nameOf(widget));
    clickAt(widget->window(), widget->mapTo(widget->window(), position));
}

void Life::clickAnywhere()
{
    QWidget *window = target();
    const QPoint position(m_random.below(window->width()), m_random.below(window->height()));
    note(QStringLiteral("click at %1, %2 of %3")
             .arg(position.x())
             .arg(position.y())
             .arg(nameOf(window)));
    clickAt(window, position);
}

// Through the window system's queue, so that modality and disabled windows count.
void Life::clickAt(QWidget *window, const QPoint &position)
{
    if (window->windowHandle() && window->isVisible() && window->rect().contains(position))
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
}

void Life::pressOrRelease()
{
    QWidget *window = target();
    const QPoint position(m_random.below(window->width()), m_random.below(window->height()));
    const bool isPress = m_random.oneIn(2);
    note(isPress ? QStringLiteral("press") : QStringLiteral("release"));
    if (!window->windowHandle() || !window->isVisible())
        return;
    if (isPress)
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
    else
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, position);
}

void Life::pressKey()
{
    static const QVector<Qt::Key> keys{
        Qt::Key_Tab,   Qt::Key_Tab,  Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space,
        Qt::Key_Space, Qt::Key_Down, Qt::Key_Escape, Qt::Key_Up,      Qt::Key_Return,
        Qt::Key_Enter, Qt::Key_Left, Qt::Key_Home,   Qt::Key_Delete,  Qt::Key_Right};
    const Qt::Key key = m_random.oneOf(keys);
    QWidget *window = target();
    note(QStringLiteral("key %1").arg(QKeySequence(key).toString()));
    if (window->windowHandle() && window->isVisible())
        QTest::keyClick(window->windowHandle(), key);
}

void Life::type()
{
    static const QVector<QString> texts{
        QStringLiteral("slow"),          QStringLiteral("robin@mail.example"),
        QStringLiteral("robin@@mail"),   QStringLiteral(" \"}\\{<b>%1&\n\t"),
        QString(1500, QLatin1Char('x')), QStringLiteral("日本語 \U0001F600")};
    const QString text = m_random.oneOf(texts);
    note(QStringLiteral("paste %1 characters").arg(text.size()));
    QWidget *focused = QApplication::focusWidget();
    if (auto *edit = qobject_cast<QPlainTextEdit *>(focused))
        edit->insertPlainText(text);
    else if (auto *line = qobject_cast<QLineEdit *>(focused))
        line->insert(text);
}

void Life::closeFromWindowSystem()
{
    // A window behind a modal dialog hears nothing of the window system.
    QWidget *dialog = QApplication::activeModalWidget();
    QWidget *window = dialog ? dialog : m_window.get();
    note(QStringLiteral("close ") + nameOf(window));
    if (window->windowHandle())
        window->windowHandle()->close();
}

void Life::letTimePass()
{
    static const QVector<int> times{1, 50, 100, 500, 500, 1000, 5000, 15000, 30000, 30000};
    const int time = m_random.oneOf(times);
    note(QStringLiteral("%1 ms pass").arg(time));
    ControlledClock::advance(Milliseconds(time));
}

void Life::endChild()
{
    const QProcess *process =
        m_uninstaller->state() == QProcess::Running ? m_uninstaller : m_installer;
    static const QVector<int> codes{0, 0, 0, 1, 5, 255, -1};
    const int code = m_random.oneOf(codes);
    if (code < 0) {
        note(QStringLiteral("the child is killed"));
        kill(static_cast<pid_t>(process->processId()), SIGKILL);
    } else {
        note(QStringLiteral("the child ends with %1").arg(code));
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
        note(QStringLiteral("the download reports %1").arg(percent));
        HeldLibrary::reportProgress(percent);
        return;
    }
    const Answer answer = m_random.oneOf(isDownload ? downloadAnswers : checkAnswers);
    note(QStringLiteral("the library answers %1").arg(QLatin1String(answer.json)));
    QByteArray json(answer.json);
    json.replace("%1", QFile::encodeName(m_world.updateDescription()));
    ++m_answersTold;
    HeldLibrary::answer(json.toStdString());
    m_isAwaiting = true;
}

void Life::changeWorld()
{
    using Condition = World::Condition;
    static const QVector<Condition> conditions{Condition::Whole, Condition::Whole,
                                               Condition::Missing, Condition::Unstartable};
    const Condition condition = m_random.oneOf(conditions);
    switch (m_random.below(5)) {
    case 0:
        note(QStringLiteral("uninstaller %1").arg(static_cast<int>(condition)));
        m_world.set(World::Program::Uninstaller, condition);
        break;
    case 1:
        note(QStringLiteral("update installer %1").arg(static_cast<int>(condition)));
        m_world.set(World::Program::UpdateInstaller, condition);
        break;
    case 2:
        note(QStringLiteral("product %1").arg(static_cast<int>(condition)));
        m_world.set(World::Program::Product, condition);
        break;
    case 3:
        note(QStringLiteral("registry"));
        m_world.setRegistered(!m_random.oneIn(3));
        break;
    default:
        note(QStringLiteral("network"));
        m_world.setOnline(m_random.oneIn(2));
        break;
    }
}

void Life::resizeWindow()
{
    note(QStringLiteral("resize"));
    m_window->resize(720 + m_random.below(100), 480 + m_random.below(100));
}

bool Life::isRunning() const
{
    return m_uninstaller->state() == QProcess::Running || m_installer->state() == QProcess::Running;
}

QString Life::brokenRule()
{
    QString broken = brokenRuleOfChildren();
    if (broken.isEmpty())
        broken = brokenRuleOfDialogs();
    if (broken.isEmpty())
        broken = brokenRuleOfPages();
    if (broken.isEmpty())
        broken = brokenRuleOfEvents();
    // The end of the program counts as a Cancel as well, but this is not the end.
    if (broken.isEmpty() && m_cancelEvents != m_cancelsConfirmed)
        broken = QStringLiteral("Cancel events that are not one for each Cancel");
    return broken;
}

QString Life::brokenRuleOfChildren() const
{
    const QList<qint64> all = childProcesses();
    if (all.size() > 1)
        return QStringLiteral("a second child");
    for (const qint64 child : all) {
        if (child != m_uninstaller->processId() && child != m_installer->processId())
            return QStringLiteral("a child that nobody knows");
    }
    if (m_uninstallerStarts > m_removesConfirmed)
        return QStringLiteral("a child without a confirmed Remove");
    if (m_uninstallerStarts > 1)
        return QStringLiteral("the uninstaller was started twice");
    if (m_installerStarts > m_packagesHeard)
        return QStringLiteral("an update installer without a downloaded package");
    if (HeldLibrary::mostAtATime() > 1)
        return QStringLiteral("two calls of the upgrade library at a time");
    if (m_downloads != m_offersHeard)
        return QStringLiteral("downloads that are not one for each offer");
    return {};
}

QString Life::brokenRuleOfDialogs() const
{
    const QList<QWidget *> dialogs = visibleDialogs();
    if (dialogs.size() > 1)
        return QStringLiteral("two dialogs at a time");
    const QWidget *layer = overlay(*m_window);
    if (layer->isVisible() != (dialogs.size() == 1))
        return QStringLiteral("the dimming layer is %1 and a dialog is %2")
            .arg(layer->isVisible() ? QStringLiteral("visible") : QStringLiteral("hidden"),
                 dialogs.isEmpty() ? QStringLiteral("not") : QStringLiteral("visible"));
    if (layer->isVisible() && layer->geometry() != m_window->rect())
        return QStringLiteral("the dimming layer does not cover the window");

    const bool isCheckOpen = m_checks + m_downloads > m_answersTold && m_checks > m_offersHeard &&
                             HeldLibrary::current() == HeldLibrary::Call::Check;
    const bool isToldOfCheck = !dialogs.isEmpty() && qobject_cast<MessageWindow *>(dialogs.first());
    if (!m_window->isEnabled() && !isCheckOpen && !isToldOfCheck)
        return QStringLiteral("the window is left disabled");
    if (m_window->isEnabled() && isCheckOpen)
        return QStringLiteral("the window is enabled during a check");
    return {};
}

QString Life::brokenRuleOfPages() const
{
    const QWidget *page = m_window->wizardPages->currentWidget();
    if (!m_window->isVisible())
        return QStringLiteral("the window is gone and the program goes on");
    const bool isUninstalling = m_uninstaller->state() == QProcess::Running;
    if (m_removesConfirmed > 0 && page != m_window->uninstallPage && page != m_window->productPage)
        return QStringLiteral("a way back after Remove");
    if (isUninstalling &&
        (page != m_window->uninstallPage || !m_window->uninstallPage->isRunning()))
        return QStringLiteral("a run of the uninstaller that is not shown");
    if (m_installer->state() == QProcess::Running &&
        (page != m_window->upgradePage || !m_window->upgradePage->isActionDisabled()))
        return QStringLiteral("an installation that is not shown, or may be left");
    if (m_installer->state() == QProcess::NotRunning && visibleDialogs().isEmpty() &&
        m_window->upgradePage->isActionDisabled())
        return QStringLiteral("an upgrade page that cannot be left");
    if (m_window->uninstallPage->isRunning() && m_removesConfirmed == 0)
        return QStringLiteral("a run is shown that nobody confirmed");
    if (m_window->optionPage->textEdit->toPlainText().size() > 1000)
        return QStringLiteral("more text than is taken");
    return {};
}

QString Life::brokenRuleOfEvents()
{
    const QList<QJsonObject> calls = AnalyticsRecord::calls();
    for (; m_eventsRead < calls.size(); ++m_eventsRead) {
        const QJsonObject &call = calls.at(m_eventsRead);
        if (call.value(QLatin1String("call")) != QLatin1String("data_event"))
            continue;
        const QString flaw = EventCatalogue::flawOf(call);
        const QString text = QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact));
        if (!flaw.isEmpty())
            return flaw + QStringLiteral(": ") + text;
        mix(text);
        const QString action = call.value(QLatin1String("action")).toString();
        const QString properties = call.value(QLatin1String("properties")).toString();
        m_uninstallResults += action == QLatin1String("UninstallCompleted") &&
                              !properties.contains(QLatin1String("ButtonClick"));
        m_launchEvents += action == QLatin1String("UpgradeSuccess_launchclick");
        if (action == QLatin1String("UninstallReConfirm"))
            ++(properties.contains(QLatin1String("\"Remove\"")) ? m_removeEvents : m_cancelEvents);
    }
    if (m_removeEvents != m_removesConfirmed)
        return QStringLiteral("Remove events that are not one for each Remove");
    if (m_uninstallResults > m_removesConfirmed)
        return QStringLiteral("more results than runs");
    return {};
}

/// Once everything is over.
QString Life::brokenRuleOfRecord() const
{
    int uninstallers = 0;
    int installers = 0;
    int launches = 0;
    const QString uninstallerArguments = m_isResourceRemovalWanted
                                             ? QStringLiteral("/VERYSILENT|/REINSTALL|/DELRESOURCE")
                                             : QStringLiteral("/VERYSILENT|/REINSTALL");
    const QStringList lines = m_world.record();
    for (const QString &line : lines) {
        if (line == QLatin1String("launched"))
            ++launches;
        else if (line == uninstallerArguments)
            ++uninstallers;
        else if (line.startsWith(QLatin1String("/CFGPATH=\"")) && line.count(QLatin1Char('|')) == 7)
            ++installers;
        else
            return QStringLiteral("unexpected arguments: ") + line;
    }
    // A child that was killed may not have come to write its line.
    if (uninstallers > m_uninstallersStarted || installers > m_installersStarted ||
        launches > m_launchEvents)
        return QStringLiteral("programs ran of which nobody knew");
    return {};
}

/// The end of the program, and what must hold then.
void Life::windUp()
{
    if (m_flaw.isEmpty() && !m_isOver && isRunning())
        m_flaw = QStringLiteral("the program ends and leaves a child to itself");
    if (m_flaw.isEmpty() && m_window->isVisible() && !m_isOver)
        mix(QStringLiteral("quit"));
    for (QProcess *process : {m_uninstaller, m_installer}) {
        disconnect(process, nullptr, this, nullptr);
        process->disconnect(m_window.get());
        if (process->state() != QProcess::NotRunning) {
            process->kill();
            process->waitForFinished(-1);
        }
    }
    if (m_flaw.isEmpty())
        m_flaw = brokenRuleOfEvents();
    m_window.reset();

    HeldLibrary::waitForCalls(m_checks + m_downloads, patience);
    if (HeldLibrary::current() != HeldLibrary::Call::None && m_answersTold == m_answersHeard)
        HeldLibrary::answer("{\"errcode\":\"-2\"}");
    NvUpgradeHelper::release();
    if (m_flaw.isEmpty())
        m_flaw = brokenRuleOfRecord();
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
