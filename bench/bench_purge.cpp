// The deleted record manager's commands on generated data: purging and recovering 10,000
// deleted rows out of 100,000, each one transaction with one look-up by key per row.
#include "Fixture.h"
#include "RebateRows.h"
#include "app/DeletedRecords.h"
#include "data/Database.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

namespace {

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

void BM_PurgeDeleted(benchmark::State& state) {
    const int deleted = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList keys = Prepare(100000, deleted);
        state.ResumeTiming();
        benchmark::DoNotOptimize(PurgeDeletedRecords(keys));
    }
}

void BM_RecoverDeleted(benchmark::State& state) {
    const int deleted = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList keys = Prepare(100000, deleted);
        state.ResumeTiming();
        benchmark::DoNotOptimize(RecoverDeletedRecords(keys));
    }
}

void BM_ListDeleted(benchmark::State& state) {
    Prepare(100000, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadDeletedRecords());
}

} // namespace

BENCHMARK(BM_PurgeDeleted)->Arg(10000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecoverDeleted)->Arg(10000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListDeleted)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    Fixture fixture;
    fixture.OpenDatabase();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
