// A click on a column header of the Switchboard's largest list, lvAll, at about 95,000 rows
// (110,834 records, a seventh of them deleted).
#include "BenchMain.h"
#include "RebateRows.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 110834;

// A click on a column header of lvAll: the rows sorted by another key, then back.
void SortByColumn(benchmark::State& state) {
    ListView* lv = frmSwitchboard::Instance()->lvAll;
    int key = 0;
    for (auto _ : state) {
        key = key == 1 ? 2 : 1; // product, then date
        lv->SetSortKey(key);
        benchmark::DoNotOptimize(lv->ListItems().Item(1)->Index());
    }
}
} // namespace

int main(int argc, char** argv) {
    return RunBenchmarks(
        argc, argv, kRecords,
        [] {
            frmSwitchboard& form = frmSwitchboard::Load();
            form.AddAllListItems();
            benchmark::RegisterBenchmark(QStringLiteral("SortByColumn/lvAll %1 rows")
                                             .arg(form.lvAll->ListItems().Count())
                                             .toStdString()
                                             .c_str(),
                                         SortByColumn)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(10);
        },
        [] { delete frmSwitchboard::Instance(); });
}
