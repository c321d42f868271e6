// The RTF report of many selected records: composing by appending at the end and writing the
// file must grow linearly with the records. The whole command (a read of each record, the
// composing, the file) beside the composing and writing alone over one walk of the rows.
#include "BenchMain.h"
#include "RebateRows.h"
#include "data/Database.h"
#include "data/Recordset.h"
#include "reports/ReportLayout.h"
#include "reports/Reports.h"
#include "reports/RtfDocument.h"

#include <QSaveFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {
QStringList gIDs;

// The table holds exactly n generated rows; gIDs their keys.
void EnsureRows(int n) {
    if (gIDs.size() == n)
        return;
    gDatabase->Execute(QStringLiteral("DELETE FROM Rebates"));
    const QList<RebateRow> rows = GenerateRebates(n, 11);
    InsertRebates(rows);
    gIDs.clear();
    for (const RebateRow& row : rows)
        gIDs.append(row.RebateID);
}

void BM_ViewSelectedRecords(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    for (auto _ : state)
        Reports::PrintPreviewSelected(gIDs);
    state.SetComplexityN(state.range(0));
}

void BM_ComposeAndWrite(benchmark::State& state) {
    EnsureRows(static_cast<int>(state.range(0)));
    QTemporaryDir dir;
    for (auto _ : state) {
        RtfDocument document;
        auto rs = gDatabase->OpenRecordset(QStringLiteral("Select * from Rebates"), dbOpenSnapshot);
        for (; !rs->IsEOF(); rs->MoveNext())
            AddRecordToRTF(document, *rs);
        QSaveFile file(dir.filePath(QStringLiteral("report.rtf")));
        file.open(QIODevice::WriteOnly);
        file.write(document.ToRtf());
        benchmark::DoNotOptimize(file.commit());
    }
    state.SetComplexityN(state.range(0));
}
} // namespace

BENCHMARK(BM_ViewSelectedRecords)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(BM_ComposeAndWrite)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

int main(int argc, char** argv) {
    QTemporaryDir temp; // the report files go here, not into the machine's folder
    qputenv("TMPDIR", temp.path().toUtf8());
    return RunBenchmarks(argc, argv, 0);
}
