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
    const auto null = std::nullopt;
    // Key, spent, expected, postage, coupon, received, followup postage, rejected, deleted.
    QList<RebateRow> rows{
        // A: unpaid, not rejected: pending and outstanding. First in the walk.
        MoneyRow("A", 100.10, 20.0, 0.49, 5.0, 0.0, 0.0),
        // B: rejected, yet money came, with a followup letter.
        MoneyRow("B", 50.0, 15.0, 0.49, 0.0, 10.0, 0.49, true),
        MoneyRow("C", 30.0, 12.5, 0.0, 0.0, 0.0, 0.0, true), // C: rejected, nothing came
        MoneyRow("D", 200.0, 40.0, 0.0, 0.0, 25.55, 0.0),    // D: paid less than expected
        // E: Null in every money column but the expected amount.
        MoneyRow("E", null, 30.0, null, null, null, null),
        // F: Rejected Null: counts as pending, but is not outstanding.
        MoneyRow("F", 0.0, 7.0, 0.0, 0.0, 0.0, 0.0, null),
        // G: long overdue and followed up.
        MoneyRow("G", 0.10, 9.99, 0.0, 0.0, 0.0, 0.20),
        // H: deleted; I: Deleted Null. Neither is counted anywhere.
        MoneyRow("H", 1000.0, 100.0, 0.0, 0.0, 0.0, 0.0, false, true),
        MoneyRow("I", 500.0, 50.0, 0.0, 0.0, 50.0, 0.0, false, null),
    };
    rows[6].DateSent = QDate(2024, 11, 1);
    rows[6].DateDue = QDate(2025, 1, 1);
    return rows;
}

} // namespace

class tst_rebatestats : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        mFixture = std::make_unique<Fixture>();
        mFixture->OpenDatabase();
    }

    void cleanup() { mFixture.reset(); }

    void householdFigures() {
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

    void noUndeletedRowLeavesZeros_data() {
        QTest::addColumn<bool>("deletedRows");
        QTest::newRow("empty table") << false;
        QTest::newRow("only deleted rows") << true;
    }

    void noUndeletedRowLeavesZeros() {
        QFETCH(bool, deletedRows);
        if (deletedRows)
            InsertRebates({{.RebateID = "1", .PurchasePrice = 10.0, .Deleted = true},
                           {.RebateID = "2", .PurchasePrice = 10.0, .Deleted = std::nullopt}});
        clsRebateStats stats;
        QVERIFY(!stats.GetStats());
        for (int count : {stats.CountFollowups(), stats.CountPending(), stats.CountPurchases(),
                          stats.CountReceived(), stats.CountRejections()})
            QCOMPARE(count, 0);
        for (Currency total : {stats.TotalCoupons(), stats.TotalFollowupPostage(),
                               stats.TotalOutstanding(), stats.TotalPostage(),
                               stats.TotalReceived(), stats.TotalRejected(), stats.TotalSpent()})
            QCOMPARE(total, Currency());
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }

    void tooManyRowsForACount() {
        QList<RebateRow> rows;
        for (int i = 0; i < 32768; ++i)
            rows.append({.RebateID = QString::number(i), .PurchasePrice = 1.0});
        InsertRebates(rows);
        clsRebateStats stats;
        QVERIFY(!stats.GetStats());
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QVERIFY(mFixture->Desktop().Shown()[0].startsWith("Error Compiling Stats | 48 | Overflow"));
        const QString entry = mFixture->LogText();
        QVERIFY(entry.contains("Error Number:\t\t6\r\n"));
        QVERIFY(entry.contains("Error Source:\t\tclsRebateStats\r\n"));
        QVERIFY(entry.contains("Error Location:\t\tGetStatistics()\r\n"));
        QCOMPARE(stats.CountPurchases(), 0);
        QCOMPARE(stats.TotalSpent(), Currency());
    }

    void countOverflowKeepsPartialFigures() {
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

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_GUILESS_MAIN(tst_rebatestats)
#include "tst_rebatestats.moc"
