// A walk of random steps over the main window:
// monkey [--steps N] [--seed S] [--repeat N] [--life S]
//
// The walk goes through many lives of the window, each with a seed of its own. When a rule is
// broken, that seed is printed: --life S repeats that life alone.

#include "tests/monkey/controlledclock.h"
#include "tests/monkey/life.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <optional>

namespace {

constexpr int longestLife = 400;
constexpr int shownTrace = 60;
constexpr int stepsThatReachAll = 1500;

QString firstWarning;

/// Any warning of Qt's is a flaw, except about what the offscreen platform lacks.
void keepWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    const bool isExcuse = text.startsWith(QLatin1String("This plugin does not support ")) ||
                          text.startsWith(QLatin1String("Mouse event occurs outside"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isExcuse && firstWarning.isEmpty())
        firstWarning = text;
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

struct Walk
{
    int steps = 0;
    int lives = 0;
    int uninstallers = 0;
    int installers = 0;
    int checks = 0;
    std::uint64_t digest = 0;
};

/// Returns whether every rule held.
bool live(World &world, std::uint64_t seed, int maxSteps, Walk &walk)
{
    Life life(world, seed, maxSteps);
    life.live();
    walk.steps += life.steps();
    ++walk.lives;
    walk.uninstallers += life.uninstallerStarts();
    walk.installers += life.installerStarts();
    walk.checks += life.checks();
    walk.digest = walk.digest * 31 + life.digest();

    const QString flaw = life.flaw().isEmpty() ? firstWarning : life.flaw();
    if (flaw.isEmpty())
        return true;
    std::printf("FAILED: %s\n  in step %d of a life; to live it again: --life %llu\n",
                qPrintable(flaw), life.steps(), static_cast<unsigned long long>(seed));
    const QStringList trace = life.trace().mid(qMax(0, life.trace().size() - shownTrace));
    for (const QString &step : trace)
        std::printf("    %s\n", qPrintable(step));
    return false;
}

std::optional<Walk> walk(World &world, std::uint64_t seed, int steps)
{
    std::mt19937_64 seeds(seed);
    Walk walk;
    while (walk.steps < steps) {
        if (!live(world, seeds(), qMin(longestLife, steps - walk.steps), walk))
            return {};
    }
    std::printf("seed %llu: %d steps in %d lives, %d checks, %d uninstallers, %d installers, "
                "digest %016llx\n",
                static_cast<unsigned long long>(seed), walk.steps, walk.lives, walk.checks,
                walk.uninstallers, walk.installers, static_cast<unsigned long long>(walk.digest));
    std::fflush(stdout);
    if (steps >= stepsThatReachAll && (!walk.checks || !walk.uninstallers || !walk.installers)) {
        std::printf("FAILED: a walk of this length must reach all three; take another seed\n");
        return {};
    }
    return walk;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1"); // the event dispatcher that tells when it rests
    QApplication application(argc, argv);
    qInstallMessageHandler(keepWarning);

    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption steps("steps"_s, "Number of steps."_s, "N"_s, "100000"_s);
    const QCommandLineOption seed("seed"_s, "Seed of the walk."_s, "S"_s, "1"_s);
    const QCommandLineOption repeat("repeat"_s, "Repeat the walk; every one must be the same."_s,
                                    "N"_s, "1"_s);
    const QCommandLineOption life("life"_s, "Live this life only."_s, "S"_s);
    parser.addOptions({steps, seed, repeat, life});
    parser.process(application);

    ControlledClock::takeOver();
    World world;
    const LookApplied look;
    const LinkCatcher links;
    if (parser.isSet(life)) {
        Walk alone;
        return live(world, parser.value(life).toULongLong(), longestLife, alone) ? 0 : 1;
    }

    const int walkLength = parser.value(steps).toInt();
    const int walks = parser.value(repeat).toInt();
    if (walkLength < 1 || walks < 1) {
        std::fprintf(stderr, "The numbers of steps and of walks are from 1 to 2147483647.\n");
        return 2;
    }
    std::printf("seed %s\n", qPrintable(parser.value(seed)));
    std::fflush(stdout);
    std::optional<Walk> first;
    for (int i = 0; i < walks; ++i) {
        const std::optional<Walk> next = walk(world, parser.value(seed).toULongLong(), walkLength);
        if (!next)
            return 1;
        if (first && first->digest != next->digest) {
            std::printf("FAILED: the same seed gave another walk\n");
            return 1;
        }
        first = next;
    }
    return 0;
}
