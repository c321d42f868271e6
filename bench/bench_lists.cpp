// The Switchboard's full list load (AddAllListItems) over 100,000 records, beside a plain
// SQLite read of the same rows with the same query.
#include "Fixture.h"
#include "RebateRows.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <QApplication>
#include <QSqlQuery>
#include <QSqlRecord>
#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 100000;
const QString kListQuery =
    QStringLiteral("SELECT * FROM Rebates WHERE NOT (((Rebates.Deleted)=True))");

void PlainSqliteRead(benchmark::State& state) {
    for (auto _ : state) {
        QSqlQuery query(gDatabase->Connection());
        query.setForwardOnly(true);
        query.exec(kListQuery);
        const int columns = query.record().count();
        qint64 rows = 0;
        while (query.next()) {
            for (int i = 0; i < columns; ++i)
                benchmark::DoNotOptimize(query.value(i));
            ++rows;
        }
        state.counters["rows"] = static_cast<double>(rows);
    }
}

void AddAllListItems(benchmark::State& state) {
    frmSwitchboard& form = frmSwitchboard::Load();
    for (auto _ : state) {
        form.AddAllListItems();
        // The lists sort once, before their rows are next read or painted: count that too.
        for (ListView* lv : {form.lvUnsent, form.lvPending, form.lvOverdue, form.lvPaid,
                             form.lvFollowup, form.lvRejected, form.lvAll})
            if (lv->ListItems().Count() > 0)
                benchmark::DoNotOptimize(lv->ListItems().Item(1)->Index());
        state.counters["rows in lvAll"] = form.lvAll->ListItems().Count();
    }
}
} // namespace

BENCHMARK(PlainSqliteRead)->Unit(benchmark::kMillisecond)->Iterations(5);
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
