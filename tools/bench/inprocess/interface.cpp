// Windows and pages, offscreen, shown and painted. Names end in "/ours" or "/baseline";
// bench/run.py pairs them. Baselines are plain: they have no style sheet, except those whose name
// says so.

#include "analytics/session.h"
#include "config/content/configcontent.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tools/bench/inprocess/sampledocument.h"
#include "wizard/mainwindow.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int manyProducts = 300;

// Until everything is laid out and painted, and what was replaced is gone.
void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

template<typename Make>
void buildAndShow(benchmark::State &state, Make make)
{
    while (state.KeepRunning()) {
        std::unique_ptr<QWidget> window = make();
        window->show();
        settle();
        state.PauseTiming();
        window.reset();
        settle();
        state.ResumeTiming();
    }
}

std::unique_ptr<QWidget> wizard()
{
    return std::make_unique<MainWindow>(nullptr);
}

std::unique_ptr<QWidget> plainWindow(int labels, int buttons)
{
    auto window = std::make_unique<QWidget>();
    auto *grid = new QGridLayout(window.get());
    const int columns = 6;
    for (int i = 0; i < labels + buttons; ++i) {
        QWidget *widget = nullptr;
        if (i < labels)
            widget = new QLabel(QStringLiteral("A label"));
        else
            widget = new QPushButton(QStringLiteral("A button"));
        grid->addWidget(widget, i / columns, i % columns);
    }
    window->resize(720, 480);
    return window;
}

void mainWindowOurs(benchmark::State &state)
{
    const LookApplied look;
    buildAndShow(state, wizard);
}
BENCHMARK(mainWindowOurs)->Name("main_window/ours")->Unit(benchmark::kMillisecond);

void measurePlainWindow(benchmark::State &state)
{
    const MainWindow counted(nullptr);
    const QList<ProductList *> lists = counted.findChildren<ProductList *>();
    for (ProductList *list : lists) {
        for (int row = 0; row < list->count(); ++row)
            list->itemWidget(list->item(row)); // each tile, in view or not
    }
    const int labels = counted.findChildren<QLabel *>().size();
    const int buttons = counted.findChildren<QAbstractButton *>().size();
    state.counters["labels"] = labels;
    state.counters["buttons"] = buttons;
    buildAndShow(state, [labels, buttons] { return plainWindow(labels, buttons); });
}

void mainWindowBaseline(benchmark::State &state)
{
    measurePlainWindow(state);
}
BENCHMARK(mainWindowBaseline)->Name("main_window/baseline")->Unit(benchmark::kMillisecond);

void mainWindowStyled(benchmark::State &state)
{
    const LookApplied look;
    measurePlainWindow(state);
}
BENCHMARK(mainWindowStyled)->Name("main_window/styled_baseline")->Unit(benchmark::kMillisecond);

// Two tabs that show the same products, changed in turn.
QList<QJsonObject> oneCategory(int products)
{
    QList<QJsonObject> categories =
        Config::jsonObjectList(SampleDocument::document(3 * products, 0), QStringLiteral("apps"));
    return {categories.constFirst()};
}

void changeTabs(benchmark::State &state, int products)
{
    const LookApplied look;
    ProductPage page(nullptr, oneCategory(products));
    page.resize(720, 480);
    page.show();
    settle();
    while (state.KeepRunning()) {
        (page.btnAll->isChecked() ? page.btnCreativity : page.btnAll)->setChecked(true);
        settle();
    }
    if (page.lstProduct->count() != products)
        state.SkipWithError("the list has not as many rows");
}

void tabChangeOurs(benchmark::State &state)
{
    changeTabs(state, manyProducts);
}
BENCHMARK(tabChangeOurs)->Name("tab_change/ours")->Unit(benchmark::kMillisecond);

void fill(QListWidget &list, int rows)
{
    list.clear();
    for (int i = 0; i < rows; ++i) {
        auto *item = new QListWidgetItem(&list);
        item->setSizeHint(QSize(168, 148));
        auto *row = new QWidget;
        auto *layout = new QVBoxLayout(row);
        layout->addWidget(new QLabel(QStringLiteral("Norvane Réel Studio %1").arg(i)));
        auto *text = new QLabel(
            QStringLiteral("Schneidet, mischt und veröffentlicht Filme in wenigen Minuten."));
        text->setWordWrap(true);
        layout->addWidget(text);
        list.setItemWidget(item, row);
    }
    list.doItemsLayout();
}

void refillPlainList(benchmark::State &state)
{
    QListWidget list;
    list.setFlow(QListView::LeftToRight);
    list.setWrapping(true);
    list.setResizeMode(QListView::Adjust);
    list.setSpacing(8);
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.resize(576, 424);
    list.show();
    fill(list, manyProducts);
    settle();
    while (state.KeepRunning()) {
        fill(list, manyProducts);
        settle();
    }
}

void tabChangeBaseline(benchmark::State &state)
{
    refillPlainList(state);
}
BENCHMARK(tabChangeBaseline)->Name("tab_change/baseline")->Unit(benchmark::kMillisecond);

void tabChangeStyled(benchmark::State &state)
{
    const LookApplied look;
    refillPlainList(state);
}
BENCHMARK(tabChangeStyled)->Name("tab_change/styled_baseline")->Unit(benchmark::kMillisecond);

void growProducts(benchmark::State &state)
{
    changeTabs(state, static_cast<int>(state.range(0)));
}
BENCHMARK(growProducts)
    ->Name("grow_products")
    ->Unit(benchmark::kMillisecond)
    ->RangeMultiplier(10)
    ->Range(10, 10000);

void growReasons(benchmark::State &state)
{
    const LookApplied look;
    const auto reasons = static_cast<int>(state.range(0));
    const QList<QJsonObject> options = Config::jsonObjectList(
        SampleDocument::document(0, reasons).value(QStringLiteral("problem_type")).toObject(),
        QStringLiteral("list"));
    buildAndShow(state, [&options] {
        auto page = std::make_unique<OptionPage>(nullptr, options);
        page->resize(720, 480);
        return page;
    });
}
BENCHMARK(growReasons)
    ->Name("grow_reasons")
    ->Unit(benchmark::kMillisecond)
    ->RangeMultiplier(10)
    ->Range(10, 10000);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const Sandbox sandbox;
    Analytics::initAnalytics();

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    Analytics::stopAnalytics();
    return EXIT_SUCCESS;
}
