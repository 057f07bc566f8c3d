// soak-window [CHANGES [WINDOWS]]: one process that changes pages and tabs CHANGES times, as
// quickly as it can, then makes and closes WINDOWS main windows. Prints memory, descriptors and
// widgets after each tenth; exits with 1 when any of them has grown since the first: memory by 2 %
// or more, the others at all; or when what is allocated still grows by 1 % in the second half; or
// when the framework has warned of anything.

#include "analytics/session.h"
#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "wizard/mainwindow.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTextStream>
#include <QtCore/QVector>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

#include <array>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>

namespace {

constexpr int defaultChanges = 10000;
constexpr int defaultWindows = 500;
constexpr int warmUps = 400; // fills Qt's caches
constexpr int tenths = 10;
constexpr double allowedGrowth = 0.02;
constexpr double allowedLateGrowth = 0.01;

int warnings = 0;

// The offscreen platform's warnings about what it lacks do not count.
void countWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (text.startsWith(QLatin1String("This plugin does not support ")))
        return;
    if (type != QtDebugMsg && type != QtInfoMsg)
        ++warnings;
    std::fprintf(stderr, "%d: %s\n", type, qPrintable(text));
}

struct State
{
    qint64 resident = 0; ///< KiB of memory, libraries and all
    qint64 own = 0;      ///< KiB that were allocated and not freed, exactly
    int descriptors = 0;
    int widgets = 0;
};

State currentState()
{
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QFile file("/proc/self/smaps_rollup"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no smaps_rollup here");
    State state;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Rss:"))
            state.resident = line.simplified().split(' ').at(1).toLongLong();
    }
    file.close();
    const struct mallinfo2 heap = mallinfo2();
    state.own = static_cast<qint64>((heap.uordblks + heap.hblkhd) / 1024);
    const QDir descriptors("/proc/self/fd"_s);
    const auto all = QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System;
    state.descriptors = descriptors.entryList(all).size();
    state.widgets = QApplication::allWidgets().size();
    return state;
}

double growth(qint64 from, qint64 to)
{
    return static_cast<double>(to) / static_cast<double>(from) - 1;
}

QString percent(double growth)
{
    return QString::number(growth * 100, 'f', 2);
}

/// Does something a number of times, measures the process after each tenth, and returns whether
/// nothing grew beyond its limit.
bool soak(const QString &what, int times, const std::function<void(int)> &doIt,
          const std::function<void()> &rest)
{
    QTextStream out(stdout);
    out << what << '\n';
    QVector<State> states;
    for (int tenth = 1; tenth <= tenths; ++tenth) {
        for (int i = times * (tenth - 1) / tenths; i < times * tenth / tenths; ++i) {
            doIt(i);
            QApplication::processEvents();
        }
        rest();
        QApplication::processEvents();
        states += currentState();
        const State &state = states.last();
        out << "  after %1: %2 KiB, %3 KiB allocated, %4 descriptors, %5 widgets\n"_s
                   .arg(times * tenth / tenths, 6)
                   .arg(state.resident)
                   .arg(state.own)
                   .arg(state.descriptors)
                   .arg(state.widgets);
        out.flush();
    }
    const State &first = states.first();
    const State &last = states.last();
    const double grown = growth(first.resident, last.resident);
    const double grownLately = growth(states.at(tenths / 2 - 1).own, last.own);
    const bool isSound = grown < allowedGrowth && grownLately < allowedLateGrowth &&
                         last.descriptors <= first.descriptors && last.widgets <= first.widgets;
    out << "  memory grew by " << percent(grown) << " % after the first tenth, allocations by "
        << percent(grownLately) << " % in the second half: " << (isSound ? "ok" : "FAILED") << '\n';
    return isSound;
}

/// One change of what the window shows: a page, a tab, a reason.
void change(MainWindow &window, int step)
{
    QStackedWidget *pages = window.wizardPages;
    const std::array<QPushButton *, 4> tabs{
        window.productPage->btnAll, window.productPage->btnCreativity,
        window.productPage->btnProductivity, window.productPage->btnUtility};
    const QList<QRadioButton *> reasons = window.optionPage->findChildren<QRadioButton *>();
    switch (step % 4) {
    case 0:
        pages->setCurrentWidget(window.optionPage);
        break;
    case 1:
        reasons.at(step / 4 % reasons.size())->click();
        break;
    case 2:
        pages->setCurrentIndex(1 + step / 4 % 3);
        break;
    default:
        pages->setCurrentWidget(window.productPage);
        tabs.at(static_cast<std::size_t>(step / 4 % 4))->click();
        break;
    }
}

int argument(int number, int missing)
{
    const QStringList arguments = QApplication::arguments();
    return number < arguments.size() ? arguments.at(number).toInt() : missing;
}

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules("qt.qpa.*=false\ndefault.debug=false"_s);
    qInstallMessageHandler(countWarning);
    const Sandbox sandbox;
    const QApplication application(argc, argv);
    const LookApplied look;
    Analytics::initAnalytics();

    auto window = std::make_unique<MainWindow>(nullptr);
    window->show();
    for (int step = 0; step < warmUps; ++step) {
        change(*window, step);
        QApplication::processEvents();
    }
    const bool isSteady = soak(
        "Changes of page, tab and reason in one window"_s, argument(1, defaultChanges),
        [&window](int step) { change(*window, step); },
        [&window] {
            window->productPage->btnAll->click();
            window->wizardPages->setCurrentWidget(window->optionPage);
        });
    window.reset();

    const bool isClean = soak(
        "Main windows, shown and closed"_s, argument(2, defaultWindows),
        [](int step) {
            MainWindow another(nullptr);
            another.show();
            change(another, step);
            QApplication::processEvents();
            another.close();
        },
        [] {});
    if (warnings > 0)
        std::printf("%d warnings: FAILED\n", warnings);
    return isSteady && isClean && warnings == 0 ? 0 : 1;
}
