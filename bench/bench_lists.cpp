// The Switchboard's full list load (AddAllListItems, F5) over 100,000 records; "x raw" is its
// time over a raw scan of the same rows through the SQLite C interface, in the same run.
#include "Fixture.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <QApplication>
#include <QElapsedTimer>
#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 100000;
const QString kListQuery =
    QStringLiteral("SELECT * FROM Rebates WHERE NOT (((Rebates.Deleted)=True))");

double RawScanMs() {
    QElapsedTimer timer;
    timer.start();
    benchmark::DoNotOptimize(RawScan(gDatabase->Name(), kListQuery));
    return timer.nsecsElapsed() / 1e6;
}

void AddAllListItems(benchmark::State& state) {
    frmSwitchboard& form = frmSwitchboard::Load();
    double listMs = 0;
    double rawMs = 0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        form.AddAllListItems();
        // The lists sort once, before their rows are next read or painted: count that too.
        for (ListView* lv : {form.lvUnsent, form.lvPending, form.lvOverdue, form.lvPaid,
                             form.lvFollowup, form.lvRejected, form.lvAll})
            if (lv->ListItems().Count() > 0)
                benchmark::DoNotOptimize(lv->ListItems().Item(1)->Index());
        listMs += timer.nsecsElapsed() / 1e6;
        state.PauseTiming();
        rawMs += RawScanMs();
        state.ResumeTiming();
        state.counters["rows in lvAll"] = form.lvAll->ListItems().Count();
    }
    state.counters["x raw"] = listMs / rawMs;
}
} // namespace

BENCHMARK(AddAllListItems)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitTestResources();
    Fixture fixture;
    fixture.OpenDatabase(GenerateRebates(kRecords, 20261123));

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    delete frmSwitchboard::Instance();
    return 0;
}
