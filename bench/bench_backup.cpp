// The backup made at each start, over a store of 100,000 records: the whole call (a new file
// in the backups folder, the older ones pruned). "x raw" is its time over a raw scan of every
// row of the same store through the SQLite C interface, in the same run; "under 0.5 s" says
// whether the call kept within half a second.
#include "BenchMain.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "app/AppSettings.h"
#include "app/Backups.h"
#include "common/core/Clock.h"
#include "data/Database.h"

#include <QFileInfo>
#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 100000;

void MakeBackupAtStart(benchmark::State& state) {
    double backupMs = 0;
    double rawMs = 0;
    double slowestMs = 0;
    for (auto _ : state) {
        QString path;
        const double ms = MsOf([&path] { path = Backups::MakeBackup(); });
        backupMs += ms;
        slowestMs = std::max(slowestMs, ms);
        state.PauseTiming();
        if (path.isEmpty())
            state.SkipWithError("the backup was not written");
        state.counters["MB"] = static_cast<double>(QFileInfo(path).size()) / 1e6;
        Clock::Advance(1);
        rawMs += RawScanMs(gDatabase->Name(), QStringLiteral("SELECT * FROM Rebates"));
        state.ResumeTiming();
    }
    state.counters["x raw"] = backupMs / rawMs;
    state.counters["under 0.5 s"] = slowestMs < 500 ? 1 : 0;
}
} // namespace

BENCHMARK(MakeBackupAtStart)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    return RunBenchmarks(argc, argv, kRecords,
                         [] { WriteSetting(Setting::BackupsKept, QStringLiteral("3")); });
}
