#include "Fixture.h"
#include "RebateRows.h"
#include "common/core/Clock.h"
#include "data/Database.h"
#include "data/RebateStatus.h"

#include <QTest>

Q_DECLARE_METATYPE(RebateRow)

namespace {
const QDate kToday = Fixture::kToday;
const QDate kLastMonth = kToday.addDays(-30);
} // namespace

class tst_rebatestatus : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void statusOfRow_data() {
        QTest::addColumn<RebateRow>("row");
        QTest::addColumn<QString>("status");
        const auto row = [](const char* name, RebateRow r, const char* status) {
            r.RebateID = "1";
            QTest::newRow(name) << r << QString(status);
        };
        const auto none = std::nullopt;
        const QDate sent = kLastMonth, yesterday = kToday.addDays(-1);
        row("all Null but the key", MoneyRow("1", none, none, none, none, none, none, none, none),
            "Unsent");
        row("deleted beats paid", {.AmountReceived = 5.0, .Deleted = true}, "Deleted");
        row("Deleted Null counts as not deleted", {.AmountReceived = 5.0, .Deleted = none}, "Paid");
        row("paid a cent", {.AmountReceived = 0.01}, "Paid");
        row("amount 0 is not paid", {.DateSent = sent, .AmountReceived = 0.0}, "Pending");
        row("paid beats rejected", {.AmountReceived = 5.0, .Rejected = true}, "Paid");
        row("rejected beats followup", {.FollowupDate = yesterday, .Rejected = true}, "Rejected");
        row("followup beats overdue",
            {.DateSent = sent, .DateDue = sent, .FollowupDate = yesterday}, "Followup");
        row("no due date", {.DateSent = sent, .DateDue = none}, "Pending");
        row("past due but received",
            {.DateSent = sent, .DateDue = yesterday, .DateReceived = yesterday}, "Pending");
    }
    void statusOfRow() {
        QFETCH(RebateRow, row);
        QFETCH(QString, status);
        Fixture fixture;
        fixture.OpenDatabase({row});
        auto rs = gDatabase->OpenRecordset("SELECT * FROM Rebates WHERE (([RebateID])= '1');");
        QCOMPARE(GetRebateStatus(*rs), status);
        QCOMPARE(rs->Fields("RebateID"), QVariant("1")); // still on the row
    }

    void dueDatePassesOvernight() {
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
};

QTEST_GUILESS_MAIN(tst_rebatestatus)
#include "tst_rebatestatus.moc"
