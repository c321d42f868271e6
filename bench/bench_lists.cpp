// The Switchboard's full list load (AddAllListItems, F5) over 100,000 records, and a Find
// over its lists. "x raw" is the
// load's time over a raw scan of the same rows through the SQLite C interface (every column), "x
// raw of its columns" over a raw scan of just the columns the lists read; both scans run in the
// same run on the same file.
#include "BenchMain.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "common/core/Globals.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmFind.h"
#include "switchboard/frmSwitchboard.h"

#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 100000;
const QString kWhere = QStringLiteral(" FROM Rebates WHERE NOT (((Rebates.Deleted)=True))");
const QString kListColumns =
    QStringLiteral("RebateID, RebateName, ProductName, DateSent, DateDue, DateReceived, "
                   "FollowupDate, AmountReceived, Rejected, Deleted");

// The lists sort once, before their rows are next read or painted: that counts too.
void ReadFirstRows(frmSwitchboard& form) {
    for (ListView* lv : form.RecordLists())
        if (lv->ListItems().Count() > 0)
            benchmark::DoNotOptimize(lv->ListItems().Item(1)->Index());
}

void RebuildAllLists(benchmark::State& state) {
    frmSwitchboard& form = *frmSwitchboard::Instance();
    const double rawMs = MeasureOverRaw(state, gDatabase->Name(), kWhere, kListColumns, [&form] {
        form.AddAllListItems();
        ReadFirstRows(form);
    });
    state.counters["raw ms"] = rawMs / static_cast<double>(state.iterations());
}

// One search over every list that finds nothing (aim: under a second).
void FindNothing(benchmark::State& state) {
    frmSwitchboard& sb = *frmSwitchboard::Instance();
    frmFind& find = frmFind::Load(&sb);
    gFindWhat = QStringLiteral("no such [r]ebate");
    for (auto _ : state)
        find.FindIt();
    delete &find;
}
} // namespace

int main(int argc, char** argv) {
    return RunBenchmarks(
        argc, argv, kRecords,
        [] {
            frmSwitchboard& form = frmSwitchboard::Load();
            form.AddAllListItems();
            int shown = 0;
            for (ListView* lv : form.RecordLists())
                shown += lv->ListItems().Count();
            benchmark::RegisterBenchmark(
                QStringLiteral("RebuildAllLists/%1 records, %2 rows in 7 lists")
                    .arg(kRecords)
                    .arg(shown)
                    .toStdString()
                    .c_str(),
                RebuildAllLists)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(5);
            benchmark::RegisterBenchmark(
                QStringLiteral("FindNothing/%1 rows walked").arg(shown).toStdString().c_str(),
                FindNothing)
                ->Unit(benchmark::kMillisecond);
        },
        [] { delete frmSwitchboard::Instance(); });
}
