// A click on a column header of the Switchboard's largest list, lvAll, at about 95,000 rows
// (110,834 records, a seventh of them deleted).
#include "Fixture.h"
#include "RebateRows.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <QApplication>
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
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitTestResources();
    Fixture fixture;
    fixture.OpenDatabase(GenerateRebates(kRecords, 20261123));
    frmSwitchboard& form = frmSwitchboard::Load();
    form.AddAllListItems();
    benchmark::DoNotOptimize(form.lvAll->ListItems().Item(1)->Index());

    benchmark::RegisterBenchmark(QStringLiteral("SortByColumn/lvAll %1 rows")
                                     .arg(form.lvAll->ListItems().Count())
                                     .toStdString()
                                     .c_str(),
                                 SortByColumn)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(10);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    delete frmSwitchboard::Instance();
    return 0;
}
