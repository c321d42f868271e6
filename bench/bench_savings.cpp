// The figures of the Switchboard's Savings page over 100,000 records (ReadSavingsFigures: money
// per month, rebates by state). "x raw" is its time over a raw scan of the same rows through the
// SQLite C interface (every column), "x raw of its columns" over one of just the columns it
// reads, both in the same run.
#include "BenchMain.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "app/SavingsFigures.h"
#include "common/core/Clock.h"
#include "data/Database.h"

#include <benchmark/benchmark.h>

namespace {
const QString kWhere = QStringLiteral(" FROM Rebates WHERE (((Rebates.Deleted)=False))");
const QString kSavingsColumns =
    QStringLiteral("RebateID, RebateName, ProductName, DateSent, DateDue, DateReceived, "
                   "FollowupDate, AmountReceived, Rejected, Deleted, RebateAmount");

void Savings(benchmark::State& state) {
    const QDate today = Date();
    int months = 0;
    MeasureOverRaw(state, gDatabase->Name(), kWhere, kSavingsColumns,
                   [&] { months = int(ReadSavingsFigures(today).months.size()); });
    state.counters["months"] = months;
}

} // namespace

int main(int argc, char** argv) {
    return RunBenchmarks(argc, argv, 100000, [] {
        benchmark::RegisterBenchmark(QStringLiteral("Savings/%1 rows read")
                                         .arg(RawRowCount(gDatabase->Name(), kWhere))
                                         .toStdString()
                                         .c_str(),
                                     Savings)
            ->Unit(benchmark::kMillisecond);
    });
}
