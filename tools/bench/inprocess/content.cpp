// The configuration document, its queue of pictures, and events. Names end in "/ours" or
// "/baseline"; bench/run.py pairs them.

#include "analytics/events.h"
#include "analytics/session.h"
#include "config/content/configcontent.h"
#include "config/download/configdownloader.h"
#include "tests/support/sandbox.h"
#include "tools/bench/inprocess/sampledocument.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>

#include <benchmark/benchmark.h>
#include <data_api.h>

namespace {

constexpr int largeBytes = 5 * 1000 * 1000;

void write(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

void documentLoadOurs(benchmark::State &state)
{
    while (state.KeepRunning())
        benchmark::DoNotOptimize(Config::readDocument(Config::configFilePath()));
}
BENCHMARK(documentLoadOurs)->Name("document_load/ours");

void documentLoadBaseline(benchmark::State &state)
{
    const QByteArray bytes = Sandbox::readFile(Config::configFilePath());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(QJsonDocument::fromJson(bytes));
}
BENCHMARK(documentLoadBaseline)->Name("document_load/baseline");

void documentAgain(benchmark::State &state)
{
    if (Config::loadConfig().isEmpty())
        state.SkipWithError("there is no document");
    while (state.KeepRunning())
        benchmark::DoNotOptimize(Config::loadConfig());
}
BENCHMARK(documentAgain)->Name("document_again/ours");

// As the library is given it by the program, and as if the text were there already.
constexpr int events = 5000;

Analytics::FeedbackState feedback()
{
    Analytics::FeedbackState state;
    state.optionValue = QStringLiteral("57");
    state.description = QStringLiteral("Der Export bricht bei langen Filmen ab.");
    state.hasAction = true;
    state.source = QStringLiteral("uninstall_action");
    state.actionName = QStringLiteral("Upgrade");
    return state;
}

void eventOurs(benchmark::State &state)
{
    const Analytics::FeedbackState click = feedback();
    while (state.KeepRunning())
        Analytics::reportUninstallContinue(click);
}
BENCHMARK(eventOurs)->Name("event/ours")->Iterations(events);

void eventBaseline(benchmark::State &state)
{
    const QByteArray text =
        QJsonDocument(QJsonObject{{QStringLiteral("MsgCode"), QStringLiteral("57")},
                                  {QStringLiteral("Msgdetail"),
                                   QStringLiteral("Der Export bricht bei langen Filmen ab.")},
                                  {QStringLiteral("isoption"), QStringLiteral("1")},
                                  {QStringLiteral("source"), QStringLiteral("uninstall_action")},
                                  {QStringLiteral("RetainActionName"), QStringLiteral("Upgrade")}})
            .toJson();
    while (state.KeepRunning())
        data_event("DoUninstall", "UninstallContinue", text.constData(), 0);
}
BENCHMARK(eventBaseline)->Name("event/baseline")->Iterations(events);

void growDocumentLoad(benchmark::State &state)
{
    const auto entries = static_cast<int>(state.range(0));
    const QString fileName = QDir::tempPath() + QStringLiteral("/growing.cfg");
    write(fileName, QJsonDocument(SampleDocument::document(entries, entries)).toJson());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(Config::readDocument(fileName));
}
BENCHMARK(growDocumentLoad)->Name("grow_document_load")->RangeMultiplier(10)->Range(10, 10000);

void growPictureQueue(benchmark::State &state)
{
    const auto entries = static_cast<int>(state.range(0));
    const QJsonObject document = SampleDocument::document(entries, entries);
    while (state.KeepRunning()) {
        ConfigDownloader downloader;
        benchmark::DoNotOptimize(downloader.collectImages(document));
    }
}
BENCHMARK(growPictureQueue)->Name("grow_picture_queue")->RangeMultiplier(10)->Range(10, 10000);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Sandbox sandbox;
    Analytics::initAnalytics();
    write(Config::configFilePath(), SampleDocument::textOfSize(largeBytes));

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    Analytics::stopAnalytics();
    return EXIT_SUCCESS;
}
