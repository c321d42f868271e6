#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebateStats.h"
#include "data/Database.h"

#include <QFile>
#include <QTest>

namespace {

Currency Dollars(double amount) {
    return Currency::FromDouble(amount);
}

// Worked out by hand below: every rule of the walk, in a household-sized table.
QList<RebateRow> HouseholdRows() {
    return {
        // A: unpaid, not rejected: pending and outstanding. First in the walk.
        {.RebateID = "A",
         .PurchasePrice = 100.10,
         .RebateAmount = 20.0,
         .PostagePrice = 0.49,
         .CouponAmount = 5.0},
        // B: rejected, yet money came, with a followup letter.
        {.RebateID = "B",
         .PurchasePrice = 50.0,
         .RebateAmount = 15.0,
         .PostagePrice = 0.49,
         .AmountReceived = 10.0,
         .FollowupPostage = 0.49,
         .Rejected = true},
        // C: rejected, nothing came.
        {.RebateID = "C", .PurchasePrice = 30.0, .RebateAmount = 12.5, .Rejected = true},
        // D: paid less than expected.
        {.RebateID = "D", .PurchasePrice = 200.0, .RebateAmount = 40.0, .AmountReceived = 25.55},
        // E: Null in every money column but the expected amount.
        {.RebateID = "E",
         .PurchasePrice = std::nullopt,
         .RebateAmount = 30.0,
         .PostagePrice = std::nullopt,
         .CouponAmount = std::nullopt,
         .AmountReceived = std::nullopt,
         .FollowupPostage = std::nullopt},
        // F: Rejected Null: counts as pending, but is not outstanding.
        {.RebateID = "F", .RebateAmount = 7.0, .Rejected = std::nullopt},
        // G: long overdue and followed up.
        {.RebateID = "G",
         .PurchasePrice = 0.10,
         .RebateAmount = 9.99,
         .DateSent = QDate(2024, 11, 1),
         .DateDue = QDate(2025, 1, 1),
         .FollowupPostage = 0.20},
        // H: deleted; I: Deleted Null. Neither is counted anywhere.
        {.RebateID = "H", .PurchasePrice = 1000.0, .RebateAmount = 100.0, .Deleted = true},
        {.RebateID = "I",
         .PurchasePrice = 500.0,
         .RebateAmount = 50.0,
         .AmountReceived = 50.0,
         .Deleted = std::nullopt},
    };
}

} // namespace

class tst_rebatestats : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void householdFigures();
    void secondWalkAddsToTheUntouchedFigures();
    void noUndeletedRowLeavesZeros_data();
    void noUndeletedRowLeavesZeros();
    void tooManyRowsForACount();
    void countOverflowKeepsPartialFigures();

private:
    std::unique_ptr<Fixture> mFixture;
};

void tst_rebatestats::init() {
    mFixture = std::make_unique<Fixture>();
    mFixture->OpenDatabase();
}

void tst_rebatestats::cleanup() {
    mFixture.reset();
}

void tst_rebatestats::householdFigures() {
    InsertRebates(HouseholdRows());
    clsRebateStats stats;
    QVERIFY(stats.GetStats());
    QCOMPARE(stats.CountPurchases(), 7);
    QCOMPARE(stats.TotalSpent(), Dollars(380.20));
    QCOMPARE(stats.TotalCoupons(), Dollars(5.0));
    QCOMPARE(stats.TotalPostage(), Dollars(0.98));
    QCOMPARE(stats.TotalFollowupPostage(), Dollars(0.69));
    QCOMPARE(stats.TotalReceived(), Dollars(35.55));
    QCOMPARE(stats.CountReceived(), 2);   // B, D
    QCOMPARE(stats.CountRejections(), 2); // B, C
    QCOMPARE(stats.TotalRejected(), Dollars(27.50));
    QCOMPARE(stats.CountPending(), 3);                  // A, F, G
    QCOMPARE(stats.CountFollowups(), 2);                // B, G
    QCOMPARE(stats.TotalOutstanding(), Dollars(29.99)); // A, G
    QVERIFY(mFixture->Desktop().boxes.isEmpty());
}

void tst_rebatestats::secondWalkAddsToTheUntouchedFigures() {
    InsertRebates(HouseholdRows());
    clsRebateStats stats;
    stats.Init();
    stats.Init();
    // The sums restart, as do the figures the first row (A) assigns.
    QCOMPARE(stats.CountPurchases(), 7);
    QCOMPARE(stats.TotalSpent(), Dollars(380.20));
    QCOMPARE(stats.TotalReceived(), Dollars(35.55));
    QCOMPARE(stats.CountPending(), 3);
    QCOMPARE(stats.TotalOutstanding(), Dollars(29.99));
    // The figures A doesn't touch count twice.
    QCOMPARE(stats.CountRejections(), 4);
    QCOMPARE(stats.TotalRejected(), Dollars(55.0));
    QCOMPARE(stats.CountReceived(), 4);
    QCOMPARE(stats.CountFollowups(), 4);
}

void tst_rebatestats::noUndeletedRowLeavesZeros_data() {
    QTest::addColumn<bool>("deletedRows");
    QTest::newRow("empty table") << false;
    QTest::newRow("only deleted rows") << true;
}

void tst_rebatestats::noUndeletedRowLeavesZeros() {
    QFETCH(bool, deletedRows);
    if (deletedRows)
        InsertRebates({{.RebateID = "1", .PurchasePrice = 10.0, .Deleted = true},
                       {.RebateID = "2", .PurchasePrice = 10.0, .Deleted = std::nullopt}});
    clsRebateStats stats;
    QVERIFY(!stats.GetStats());
    for (int count : {stats.CountFollowups(), stats.CountPending(), stats.CountPurchases(),
                      stats.CountReceived(), stats.CountRejections()})
        QCOMPARE(count, 0);
    for (Currency total :
         {stats.TotalCoupons(), stats.TotalFollowupPostage(), stats.TotalOutstanding(),
          stats.TotalPostage(), stats.TotalReceived(), stats.TotalRejected(), stats.TotalSpent()})
        QCOMPARE(total, Currency());
    QVERIFY(mFixture->Desktop().boxes.isEmpty());
}

void tst_rebatestats::tooManyRowsForACount() {
    QList<RebateRow> rows;
    for (int i = 0; i < 32768; ++i)
        rows.append({.RebateID = QString::number(i), .PurchasePrice = 1.0});
    InsertRebates(rows);
    clsRebateStats stats;
    QVERIFY(!stats.GetStats());
    QCOMPARE(mFixture->Desktop().boxes.size(), 1);
    QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Error Compiling Stats"));
    QCOMPARE(mFixture->Desktop().boxes[0].style, 48);
    QVERIFY(mFixture->Desktop().boxes[0].prompt.contains("Overflow"));
    const QString entry = mFixture->LogText();
    QVERIFY(entry.contains("Error Number:\t\t6\r\n"));
    QVERIFY(entry.contains("Error Source:\t\tclsRebateStats\r\n"));
    QVERIFY(entry.contains("Error Location:\t\tGetStatistics()\r\n"));
    QCOMPARE(stats.CountPurchases(), 0);
    QCOMPARE(stats.TotalSpent(), Currency());
}

void tst_rebatestats::countOverflowKeepsPartialFigures() {
    // One pending row first, then 16,384 rejected ones: a second walk on the same object adds
    // to CountRejections until it passes 32,767.
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
    QCOMPARE(mFixture->Desktop().boxes.size(), 1);
    QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Error Compiling Stats"));
    QCOMPARE(stats.CountRejections(), 32767);
    QCOMPARE(stats.TotalRejected(), Dollars(32767.0));
    // The failing row (the 16,384th rejected one) had its sums added before its count failed.
    QCOMPARE(stats.TotalSpent(), Dollars(16385.0));
}

QTEST_GUILESS_MAIN(tst_rebatestats)
#include "tst_rebatestats.moc"
