// The Switchboard's Statistics page and Find at sizes far beyond a household's.
//
//   Statistics/<n> rows counted   UpdateStatistics over 30,000 records; "x raw" is its time
//                                 over a raw scan of the same rows through the SQLite C
//                                 interface (every column), "x raw of its columns" over one of
//                                 just the columns it sums, both in the same run (aim: < 2)
//   FindNothing/<n> rows walked   one search over the lists of 100,000 records that finds
//                                 nothing (aim: < 1 s)

#include "Fixture.h"
#include "RawScan.h"
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
#include <benchmark/benchmark.h>
#include <memory>

namespace {
const QString kWhere = QStringLiteral(" FROM Rebates WHERE (((Rebates.Deleted)=False))");
const QString kEveryColumn = QStringLiteral("SELECT *") + kWhere;
const QString kStatisticsColumns =
    QStringLiteral("SELECT PurchasePrice, CouponAmount, PostagePrice, FollowupPostage, "
                   "AmountReceived, Rejected, RebateAmount") +
    kWhere;

double MsOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

void Statistics(benchmark::State& state) {
    StatisticsPage page;
    double pageMs = 0;
    double rawMs = 0;
    double rawColumnsMs = 0;
    for (auto _ : state) {
        pageMs += MsOf([&page] { page.UpdateStatistics(); });
        state.PauseTiming();
        rawMs += MsOf([] { benchmark::DoNotOptimize(RawScan(gDatabase->Name(), kEveryColumn)); });
        rawColumnsMs +=
            MsOf([] { benchmark::DoNotOptimize(RawScan(gDatabase->Name(), kStatisticsColumns)); });
        state.ResumeTiming();
    }
    state.counters["x raw"] = pageMs / rawMs;
    state.counters["x raw of its columns"] = pageMs / rawColumnsMs;
    state.counters["purchases shown"] =
        page.lblStatFigures(5)->text().remove(QLatin1Char(',')).toDouble();
}

void FindNothing(benchmark::State& state) {
    frmSwitchboard& sb = *frmSwitchboard::Instance();
    frmFind& find = frmFind::Load(&sb);
    gFindWhat = QStringLiteral("no such [r]ebate");
    for (auto _ : state)
        find.FindIt();
    delete &find;
}

int RowsCounted() {
    return static_cast<int>(
        RawScan(gDatabase->Name(), QStringLiteral("SELECT NULL") + kWhere)); // one per row
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitTestResources();
    benchmark::Initialize(&argc, argv);
    {
        Fixture fixture;
        fixture.OpenDatabase(GenerateRebates(30000, 20261123));
        benchmark::RegisterBenchmark(
            QStringLiteral("Statistics/%1 rows counted").arg(RowsCounted()).toStdString().c_str(),
            Statistics)
            ->Unit(benchmark::kMillisecond);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::ClearRegisteredBenchmarks();
    }
    {
        Fixture fixture;
        fixture.OpenDatabase(GenerateRebates(100000, 20261123));
        frmSwitchboard& sb = frmSwitchboard::Load();
        int rows = 0;
        for (ListView* lv : sb.RecordLists())
            rows += lv->ListItems().Count();
        benchmark::RegisterBenchmark(
            QStringLiteral("FindNothing/%1 rows walked").arg(rows).toStdString().c_str(),
            FindNothing)
            ->Unit(benchmark::kMillisecond);
        benchmark::RunSpecifiedBenchmarks();
        delete &sb;
    }
    benchmark::Shutdown();
    return 0;
}
