// The Switchboard's Statistics page over 30,000 records (UpdateStatistics). "x raw" is its
// time over a raw scan of the same rows through the SQLite C interface (every column), "x raw
// of its columns" over one of just the columns it sums, both in the same run (aim: < 2).
#include "BenchMain.h"
#include "RawScan.h"
#include "RebateRows.h"
#include "data/Database.h"
#include "switchboard/StatisticsPage.h"

#include <QLabel>
#include <benchmark/benchmark.h>

namespace {
const QString kWhere = QStringLiteral(" FROM Rebates WHERE (((Rebates.Deleted)=False))");
const QString kStatisticsColumns =
    QStringLiteral("PurchasePrice, CouponAmount, PostagePrice, FollowupPostage, "
                   "AmountReceived, Rejected, RebateAmount");

void Statistics(benchmark::State& state) {
    StatisticsPage page;
    MeasureOverRaw(state, gDatabase->Name(), kWhere, kStatisticsColumns,
                   [&page] { page.UpdateStatistics(); });
    state.counters["purchases shown"] =
        page.lblStatFigures(5)->text().remove(QLatin1Char(',')).toDouble();
}

} // namespace

int main(int argc, char** argv) {
    return RunBenchmarks(argc, argv, 30000, [] {
        benchmark::RegisterBenchmark(QStringLiteral("Statistics/%1 rows counted")
                                         .arg(RawRowCount(gDatabase->Name(), kWhere))
                                         .toStdString()
                                         .c_str(),
                                     Statistics)
            ->Unit(benchmark::kMillisecond);
    });
}
