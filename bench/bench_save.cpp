// One record saved through the rebate form with 100,000 records in the table and the
// Switchboard's lists built: a change to a stored record and a new record (which also looks
// for a free RebateID), each with the lists' update that follows the save (UpdateIcons).
#include "BenchMain.h"
#include "RebateRows.h"
#include "app/clsRebate.h"
#include "common/core/Clock.h"
#include "common/core/Globals.h"
#include "data/Database.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "switchboard/frmSwitchboard.h"

#include <QSqlQuery>
#include <benchmark/benchmark.h>

namespace {
constexpr int kRecords = 100000;
const QString kStored = QStringLiteral("20261101090000");

// The floor under any save: one row changed in a transaction of its own by plain SQL.
void PlainSqliteUpdate(benchmark::State& state) {
    QSqlQuery query(gDatabase->Connection());
    query.prepare(QStringLiteral("UPDATE Rebates SET Remarks = ? WHERE RebateID = ?"));
    int round = 0;
    for (auto _ : state) {
        query.addBindValue(QStringLiteral("Plain %1").arg(++round));
        query.addBindValue(kStored);
        if (!query.exec())
            state.SkipWithError("the update failed");
    }
}

void SaveChangedRecord(benchmark::State& state) {
    clsRebate::SetSelectedRebateIDSource([] { return kStored; });
    gbNewRecord = false;
    frmRebate* form = frmRebate::LoadAndShow();
    int round = 0;
    for (auto _ : state) {
        form->txtFields(RebateField::Remarks)->setText(QStringLiteral("Remark %1").arg(++round));
        form->mnuSaveRecord_Click();
        frmSwitchboard::Instance()->UpdateIcons(kStored);
    }
    if (form->RecordChanged())
        state.SkipWithError("the record was not saved");
    form->Unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void SaveNewRecord(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Clock::Advance(1);
        gbNewRecord = true;
        frmRebate* form = frmRebate::LoadAndShow();
        form->txtFields(RebateField::RebateName)->setText(QStringLiteral("Spring Mail-In"));
        form->txtFields(RebateField::ProductName)->setText(QStringLiteral("Toaster"));
        form->txtFields(RebateField::PurchasePrice)->setText(QStringLiteral("$24.99"));
        form->txtFields(RebateField::RebateAmount)->setText(QStringLiteral("$10.00"));
        state.ResumeTiming();

        form->mnuSaveRecord_Click();
        frmSwitchboard::Instance()->UpdateIcons(form->RebateID());

        state.PauseTiming();
        if (form->RebateID().isEmpty())
            state.SkipWithError("the record was not saved");
        form->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}
} // namespace

BENCHMARK(PlainSqliteUpdate)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(SaveChangedRecord)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(SaveNewRecord)->Unit(benchmark::kMillisecond)->Iterations(50);

int main(int argc, char** argv) {
    return RunBenchmarks(
        argc, argv, kRecords - 1,
        [] {
            InsertRebates({RebateRow{.RebateID = kStored,
                                     .RebateName = QStringLiteral("Router Rebate"),
                                     .ProductName = QStringLiteral("Router"),
                                     .PurchasePrice = 89.99,
                                     .RebateAmount = 30.0}});
            frmSwitchboard::Load();
        },
        [] { delete frmSwitchboard::Instance(); });
}
