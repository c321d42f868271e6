// The Switchboard's Statistics page and Find at sizes far beyond a household's.
//
//   StatisticsPage/30000     UpdateStatistics over 30,000 rows; "vs_plain_read" is its time
//                            over that of reading the same rows with a bare query (aim: < 2)
//   PlainRead/30000          that bare query: every column of every undeleted row
//   FindNothing/100000       one search that walks all lists of 100,000 records and finds
//                            nothing (aim: < 1 s)

#include "Fixture.h"
#include "RebateRows.h"
#include "common/core/Globals.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/StatisticsPage.h"
#include "switchboard/frmFind.h"
#include "switchboard/frmSwitchboard.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QSqlQuery>
#include <QSqlRecord>
#include <benchmark/benchmark.h>

namespace {

// A program folder holding n generated rebates (a seventh of them deleted).
struct Store {
    explicit Store(int n) {
        fixture.OpenDatabase();
        InsertRebates(GenerateRebates(n, 20261123));
    }
    Fixture fixture;
};

// Reads every column of every row the statistics walk; returns a checksum so that nothing is
// optimised away.
qint64 PlainRead() {
    QSqlQuery query(gDatabase->Connection());
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT * FROM Rebates WHERE (((Rebates.Deleted)=False))"));
    const int columns = query.record().count();
    qint64 sum = 0;
    while (query.next())
        for (int c = 0; c < columns; ++c)
            sum += query.value(c).toString().size();
    return sum;
}

double SecondsOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e9;
}

void BM_PlainRead(benchmark::State& state) {
    Store store(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(PlainRead());
}

void BM_StatisticsPage(benchmark::State& state) {
    Store store(static_cast<int>(state.range(0)));
    StatisticsPage page;
    double plain = 1e9;
    for (int i = 0; i < 3; ++i)
        plain = std::min(plain, SecondsOf([] { benchmark::DoNotOptimize(PlainRead()); }));
    double total = 0;
    for (auto _ : state)
        total += SecondsOf([&page] { page.UpdateStatistics(); });
    state.counters["vs_plain_read"] = total / static_cast<double>(state.iterations()) / plain;
    state.counters["purchases"] =
        page.lblStatFigures(5)->text().remove(QLatin1Char(',')).toDouble();
}

void BM_FindNothing(benchmark::State& state) {
    Store store(static_cast<int>(state.range(0)));
    frmSwitchboard& sb = frmSwitchboard::Load();
    frmFind& find = frmFind::Load(&sb);
    gFindWhat = QStringLiteral("no such [r]ebate");
    int rows = 0;
    for (ListView* lv : {sb.lvUnsent, sb.lvPending, sb.lvOverdue, sb.lvPaid, sb.lvFollowup,
                         sb.lvRejected, sb.lvAll})
        rows += lv->ListItems().Count();
    for (auto _ : state)
        find.FindIt();
    state.counters["rows_walked"] = rows;
    state.counters["messages"] = store.fixture.Desktop().boxes.size();
    delete &find;
    delete &sb;
}

} // namespace

BENCHMARK(BM_PlainRead)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StatisticsPage)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindNothing)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitTestResources();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
