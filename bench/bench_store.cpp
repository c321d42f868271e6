// The store on generated data: a full list load (the listed rows through Recordset and the
// status rule) and the statistics walk, each beside a plain QSqlQuery read of the same rows.
#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebateStats.h"
#include "common/core/Clock.h"
#include "data/Database.h"
#include "data/RebateQueries.h"
#include "data/RebateStatus.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QSqlRecord>
#include <benchmark/benchmark.h>

namespace {

// The plain reads run the program's queries as text.
const QString kListRows =
    QStringLiteral("SELECT * FROM Rebates WHERE NOT (((Rebates.Deleted)=True))");
const QString kStatsRows =
    QStringLiteral("SELECT * FROM Rebates WHERE (((Rebates.Deleted)=False))");

// The table holds exactly n generated rows.
void EnsureRows(int n) {
    static int current = 0;
    if (current == n)
        return;
    gDatabase->Execute(QStringLiteral("DELETE FROM Rebates"));
    InsertRebates(GenerateRebates(n, 7));
    current = n;
}

// Every value of every row, as a caller of QtSql alone would read them.
std::int64_t PlainRead(const QString& sql) {
    QSqlQuery query(gDatabase->Connection());
    query.setForwardOnly(true);
    query.exec(sql);
    const int columns = query.record().count();
    std::int64_t rows = 0;
    while (query.next()) {
        for (int c = 0; c < columns; ++c)
            benchmark::DoNotOptimize(query.value(c));
        ++rows;
    }
    return rows;
}

void BM_RecordsetWithStatus(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto rs = RebateQueries::OpenListRows();
        const int name = rs->FieldIndex(QStringLiteral("RebateName"));
        const QDate today = Date();
        std::int64_t rows = 0;
        while (!rs->IsEOF()) {
            benchmark::DoNotOptimize(GetRebateStatus(*rs, today));
            benchmark::DoNotOptimize(rs->Fields(name));
            rs->MoveNext();
            ++rows;
        }
        state.counters["rows"] = static_cast<double>(rows);
    }
}

void BM_PlainQueryRead(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    for (auto _ : state)
        state.counters["rows"] = static_cast<double>(PlainRead(kListRows));
}

void BM_StatsInit(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        clsRebateStats stats;
        stats.Init();
        state.counters["rows"] = stats.CountPurchases();
    }
}

void BM_PlainStatsRead(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    for (auto _ : state)
        state.counters["rows"] = static_cast<double>(PlainRead(kStatsRows));
}

BENCHMARK(BM_RecordsetWithStatus)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainQueryRead)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StatsInit)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainStatsRead)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    Fixture fixture;
    fixture.OpenDatabase();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
