#include "Fixture.h"
#include "RebateRows.h"
#include "common/core/Clock.h"
#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/RebateStatus.h"

#include <QTest>

Q_DECLARE_METATYPE(RebateRow)

namespace {
const QDate kToday = Fixture::kToday;
const QDate kYesterday = kToday.addDays(-1);
const QDate kLastMonth = kToday.addDays(-30);
} // namespace

class tst_rebatestatus : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void statusOfRow_data();
    void statusOfRow();
    void dueDatePassesOvernight();
    void missingColumnRaises();
    void columnsFollowEachRecordset();
};

void tst_rebatestatus::statusOfRow_data() {
    QTest::addColumn<RebateRow>("row");
    QTest::addColumn<QString>("status");

    const RebateRow allNull{.RebateID = "1",
                            .RebateName = std::nullopt,
                            .Address = std::nullopt,
                            .PhoneNumber = std::nullopt,
                            .ProductName = std::nullopt,
                            .PurchasePrice = std::nullopt,
                            .RebateAmount = std::nullopt,
                            .PostagePrice = std::nullopt,
                            .CouponAmount = std::nullopt,
                            .AmountReceived = std::nullopt,
                            .FollowupPostage = std::nullopt,
                            .Rejected = std::nullopt,
                            .Deleted = std::nullopt};
    QTest::newRow("all Null but the key") << allNull << "Unsent";
    QTest::newRow("new record, no dates") << RebateRow{.RebateID = "1"} << "Unsent";

    QTest::newRow("deleted") << RebateRow{.RebateID = "1", .Deleted = true} << "Deleted";
    QTest::newRow("deleted beats paid")
        << RebateRow{.RebateID = "1", .AmountReceived = 5.0, .Deleted = true} << "Deleted";
    QTest::newRow("Deleted Null counts as not deleted")
        << RebateRow{.RebateID = "1", .AmountReceived = 5.0, .Deleted = std::nullopt} << "Paid";

    QTest::newRow("paid a cent") << RebateRow{.RebateID = "1", .AmountReceived = 0.01} << "Paid";
    QTest::newRow("amount 0 is not paid")
        << RebateRow{.RebateID = "1", .DateSent = kLastMonth, .AmountReceived = 0.0} << "Pending";
    QTest::newRow("negative amount is not paid")
        << RebateRow{.RebateID = "1", .DateSent = kLastMonth, .AmountReceived = -3.0} << "Pending";
    QTest::newRow("paid beats rejected")
        << RebateRow{.RebateID = "1", .AmountReceived = 5.0, .Rejected = true} << "Paid";

    QTest::newRow("rejected") << RebateRow{.RebateID = "1",
                                           .DateSent = kLastMonth,
                                           .Rejected = true}
                              << "Rejected";
    QTest::newRow("rejected beats followup")
        << RebateRow{.RebateID = "1", .FollowupDate = kYesterday, .Rejected = true} << "Rejected";
    QTest::newRow("Rejected Null counts as not rejected")
        << RebateRow{.RebateID = "1", .DateSent = kLastMonth, .Rejected = std::nullopt}
        << "Pending";

    QTest::newRow("followup") << RebateRow{.RebateID = "1", .FollowupDate = kToday} << "Followup";
    QTest::newRow("followup beats overdue") << RebateRow{.RebateID = "1",
                                                         .DateSent = kLastMonth,
                                                         .DateDue = kLastMonth,
                                                         .FollowupDate = kYesterday}
                                            << "Followup";

    QTest::newRow("due yesterday")
        << RebateRow{.RebateID = "1", .DateSent = kLastMonth, .DateDue = kYesterday} << "Overdue";
    QTest::newRow("due yesterday, never sent")
        << RebateRow{.RebateID = "1", .DateDue = kYesterday} << "Overdue";
    QTest::newRow("due today") << RebateRow{.RebateID = "1",
                                            .DateSent = kLastMonth,
                                            .DateDue = kToday}
                               << "Pending";
    QTest::newRow("due today, never sent")
        << RebateRow{.RebateID = "1", .DateDue = kToday} << "Unsent";
    QTest::newRow("no due date") << RebateRow{.RebateID = "1",
                                              .DateSent = kLastMonth,
                                              .DateDue = std::nullopt}
                                 << "Pending";
    QTest::newRow("past due but received, no money") << RebateRow{.RebateID = "1",
                                                                  .DateSent = kLastMonth,
                                                                  .DateDue = kYesterday,
                                                                  .AmountReceived = 0.0,
                                                                  .DateReceived = kYesterday}
                                                     << "Pending";
    QTest::newRow("past due but received, never sent")
        << RebateRow{.RebateID = "1", .DateDue = kYesterday, .DateReceived = kYesterday}
        << "Unsent";
    QTest::newRow("sent, due next month")
        << RebateRow{.RebateID = "1", .DateSent = kToday, .DateDue = kToday.addDays(56)}
        << "Pending";
}

void tst_rebatestatus::statusOfRow() {
    QFETCH(RebateRow, row);
    QFETCH(QString, status);
    Fixture fixture;
    fixture.OpenDatabase({row});
    auto rs = gDatabase->OpenRecordset("SELECT * FROM Rebates WHERE (([RebateID])= '1');");
    QCOMPARE(GetRebateStatus(*rs), status);
    // The rule reads and never moves.
    QCOMPARE(rs->Fields("RebateID"), QVariant("1"));
    QVERIFY(!rs->IsEOF());
}

void tst_rebatestatus::dueDatePassesOvernight() {
    Fixture fixture;
    fixture.OpenDatabase({{.RebateID = "1", .DateSent = kLastMonth, .DateDue = kToday}});
    auto rs = gDatabase->OpenRecordset("Select * from Rebates");
    QCOMPARE(GetRebateStatus(*rs), QString("Pending"));
    // A walk over many rows hands in the day it read once; that day decides, not the clock.
    QCOMPARE(GetRebateStatus(*rs, kToday.addDays(1)), QString("Overdue"));
    Clock::Advance(14 * 3600 - 1); // 23:59:59
    QCOMPARE(GetRebateStatus(*rs), QString("Pending"));
    Clock::Advance(1);
    QCOMPARE(GetRebateStatus(*rs), QString("Overdue"));
    QCOMPARE(GetRebateStatus(*rs, kToday), QString("Pending"));
}

void tst_rebatestatus::missingColumnRaises() {
    Fixture fixture;
    fixture.OpenDatabase({{.RebateID = "1"}});
    auto rs = gDatabase->OpenRecordset("Select RebateID, Deleted, AmountReceived from Rebates");
    QCOMPARE(ErrorOf([&] { GetRebateStatus(*rs); }), 3265);
}

void tst_rebatestatus::columnsFollowEachRecordset() {
    Fixture fixture;
    fixture.OpenDatabase({{.RebateID = "1", .DateSent = kLastMonth, .DateDue = kYesterday},
                          {.RebateID = "2", .AmountReceived = 5.0}});
    auto all = gDatabase->OpenRecordset("Select * from Rebates");
    QCOMPARE(GetRebateStatus(*all), QString("Overdue"));
    // Same fields in another order: the rule must not reuse the first recordset's positions.
    auto reordered = gDatabase->OpenRecordset(
        "Select DateSent, DateDue, FollowupDate, DateReceived, Rejected, AmountReceived, Deleted, "
        "RebateID from Rebates Where RebateID = '2'");
    QCOMPARE(GetRebateStatus(*reordered), QString("Paid"));
    QCOMPARE(GetRebateStatus(*all), QString("Overdue"));
}

QTEST_GUILESS_MAIN(tst_rebatestatus)
#include "tst_rebatestatus.moc"
