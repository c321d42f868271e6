#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebateStats.h"
#include "data/Database.h"

#include <QTest>

// The figures themselves, and an empty table's zeros, are checked on the Statistics page
// (tst_statistics); here what only a caller sees: the walk's answer and its overflow.
class tst_rebatestats : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        mFixture = std::make_unique<Fixture>();
        mFixture->OpenDatabase();
    }
    void cleanup() { mFixture.reset(); }

    // A second walk on the same object adds to CountRejections until it passes 32,767; then a
    // table of more rows than a count holds leaves the figures as they were.
    void overflowsKeepFigures() {
        QList<RebateRow> rows{{.RebateID = "0", .PurchasePrice = 1.0, .RebateAmount = 1.0}};
        for (int i = 1; i <= 16384; ++i)
            rows.append({.RebateID = QString::number(i),
                         .PurchasePrice = 1.0,
                         .RebateAmount = 1.0,
                         .Rejected = true});
        InsertRebates(rows);
        clsRebateStats stats;
        QVERIFY(stats.GetStats());
        QCOMPARE(stats.CountRejections(), 16384);
        QVERIFY(!stats.GetStats());
        QCOMPARE(stats.CountRejections(), 32767);
        QCOMPARE(stats.TotalRejected(), Currency::FromDouble(32767.0));
        // The failing row had its sums added before its count failed.
        QCOMPARE(stats.TotalSpent(), Currency::FromDouble(16385.0));
        rows.clear();
        for (int i = 16385; i < 32768; ++i)
            rows.append({.RebateID = QString::number(i), .PurchasePrice = 1.0});
        InsertRebates(rows);
        QVERIFY(!stats.GetStats());
        QCOMPARE(stats.CountPurchases(), 16385);
        QCOMPARE(stats.TotalSpent(), Currency::FromDouble(16385.0));
        QCOMPARE(mFixture->Desktop().boxes.size(), 2);
        QVERIFY(mFixture->Desktop().Shown()[1].startsWith("Error Compiling Stats | 48 | Overflow"));
        QVERIFY(mFixture->LogText().contains("Error Number:\t\t6\r\n"));
        QVERIFY(mFixture->LogText().contains(
            "Error Source:\t\tclsRebateStats\r\nError Location:\t\tGetStatistics()\r\n"));
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_GUILESS_MAIN(tst_rebatestats)
#include "tst_rebatestats.moc"
