// The figures of the Switchboard's Savings page over 100,000 records (ReadSavingsFigures: money
// per month, rebates by state). "x raw" is its time over a raw scan of the same rows through the
// SQLite C interface (every column), "x raw of its columns" over one of just the columns it
// reads, both in the same run.
#include "Fixture.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "app/SavingsFigures.h"
#include "common/core/Clock.h"
#include "data/Database.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

namespace {
const QString kWhere = QStringLiteral(" FROM Rebates WHERE (((Rebates.Deleted)=False))");
const QString kEveryColumn = QStringLiteral("SELECT *") + kWhere;
const QString kSavingsColumns =
    QStringLiteral("SELECT RebateID, RebateName, ProductName, DateSent, DateDue, DateReceived, "
                   "FollowupDate, AmountReceived, Rejected, Deleted, RebateAmount") +
    kWhere;

void Savings(benchmark::State& state) {
    const QDate today = Date();
    double figuresMs = 0;
    double rawMs = 0;
    double rawColumnsMs = 0;
    int months = 0;
    for (auto _ : state) {
        figuresMs += MsOf([&] { months = int(ReadSavingsFigures(today).months.size()); });
        state.PauseTiming();
        rawMs += RawScanMs(gDatabase->Name(), kEveryColumn);
        rawColumnsMs += RawScanMs(gDatabase->Name(), kSavingsColumns);
        state.ResumeTiming();
    }
    state.counters["x raw"] = figuresMs / rawMs;
    state.counters["x raw of its columns"] = figuresMs / rawColumnsMs;
    state.counters["months"] = months;
}

int RowsRead() {
    return static_cast<int>(
        RawScan(gDatabase->Name(), QStringLiteral("SELECT NULL") + kWhere)); // one per row
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    {
        Fixture fixture;
        fixture.OpenDatabase(GenerateRebates(100000, 20261123));
        benchmark::RegisterBenchmark(
            QStringLiteral("Savings/%1 rows read").arg(RowsRead()).toStdString().c_str(), Savings)
            ->Unit(benchmark::kMillisecond);
        benchmark::RunSpecifiedBenchmarks();
    }
    benchmark::Shutdown();
    return 0;
}
