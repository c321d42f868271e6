// The deleted record manager's commands on generated data: purging and recovering 10,000
// deleted rows out of 100,000, each one transaction with one look-up by key per row. "x raw" is
// the command's time over a raw scan of the same deleted rows, in the same run.
#include "BenchMain.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "app/DeletedRecords.h"
#include "data/Database.h"

#include <benchmark/benchmark.h>

namespace {
const QString kDeletedQuery =
    QStringLiteral("SELECT * FROM Rebates WHERE (((Rebates.Deleted)=True))");

// n rows, the first `deleted` of them marked deleted; returns their keys.
QStringList Prepare(int n, int deleted) {
    gDatabase->Execute(QStringLiteral("DELETE FROM Rebates"));
    QList<RebateRow> rows = GenerateRebates(n, 11);
    QStringList keys;
    for (int i = 0; i < rows.size(); ++i) {
        rows[i].Deleted = i < deleted;
        if (i < deleted)
            keys << rows[i].RebateID;
    }
    InsertRebates(rows);
    return keys;
}

// Times `command` over the keys of `deleted` rows marked deleted among 100,000.
template <typename Command> void RunOnDeleted(benchmark::State& state, Command command) {
    const int deleted = static_cast<int>(state.range(0));
    double commandMs = 0;
    double rawMs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList keys = Prepare(100000, deleted);
        rawMs += RawScanMs(gDatabase->Name(), kDeletedQuery);
        state.ResumeTiming();
        commandMs += MsOf([&] { benchmark::DoNotOptimize(command(keys)); });
    }
    state.counters["x raw"] = commandMs / rawMs;
}

void BM_PurgeDeleted(benchmark::State& state) {
    RunOnDeleted(state, PurgeDeletedRecords);
}

void BM_RecoverDeleted(benchmark::State& state) {
    RunOnDeleted(state, RecoverDeletedRecords);
}

void BM_ListDeleted(benchmark::State& state) {
    Prepare(100000, static_cast<int>(state.range(0)));
    double listMs = 0;
    double rawMs = 0;
    for (auto _ : state) {
        listMs += MsOf([] { benchmark::DoNotOptimize(ReadDeletedRecords()); });
        state.PauseTiming();
        rawMs += RawScanMs(gDatabase->Name(), kDeletedQuery);
        state.ResumeTiming();
    }
    state.counters["x raw"] = listMs / rawMs;
}

} // namespace

BENCHMARK(BM_PurgeDeleted)->Arg(10000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecoverDeleted)->Arg(10000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListDeleted)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return RunBenchmarks(argc, argv, 0);
}
