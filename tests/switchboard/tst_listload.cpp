#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebate.h"
#include "app/clsRebateStats.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "data/RebateStatus.h"
#include "switchboard/frmSwitchboard.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSqlQuery>
#include <QTest>

namespace {

constexpr int kRecords = 3500;

// Stores a value as another program might: of any type, in any column.
QString Key(int record) {
    return QStringLiteral("2026%1").arg(record, 10, 10, QLatin1Char('0'));
}

void Store(int record, const QString& column, const QVariant& value) {
    QSqlQuery query(gDatabase->Connection());
    QVERIFY(query.prepare(QString("UPDATE Rebates SET %1 = ? WHERE RebateID = ?").arg(column)));
    query.addBindValue(value);
    query.addBindValue(Key(record));
    QVERIFY(query.exec());
    QCOMPARE(query.numRowsAffected(), 1);
}

// "RebateID|icon|text|product|date" of each row of the list, sorted.
QStringList Rows(ListView* lv) {
    QStringList rows;
    for (int i = 1; i <= lv->ListItems().Count(); ++i) {
        const ListItem* item = lv->ListItems().Item(i);
        rows << QStringList{item->SubItems(3), item->Icon(), item->Text(), item->SubItems(1),
                            item->SubItems(2)}
                    .join('|');
    }
    rows.sort();
    return rows;
}

// The same rows worked out from a record set holding every column, through the general
// conversions: the list a record's status puts it in, and lvAll.
QMap<QString, QStringList> ExpectedRows() {
    const QStringList listed{"Unsent", "Pending", "Overdue", "Paid", "Followup", "Rejected"};
    QMap<QString, QStringList> lists;
    auto rs = gDatabase->OpenRecordset("SELECT * FROM Rebates WHERE NOT (Deleted = True)",
                                       dbOpenSnapshot);
    for (; !rs->IsEOF(); rs->MoveNext()) {
        const auto plain = [&rs](const char* name) {
            return IsBlank(rs->Fields(name)) ? QString() : rs->Fields(name).toString();
        };
        QString status;
        bool unreadable = false;
        try {
            status = GetRebateStatus(*rs, Fixture::kToday);
            for (const char* date : {"DateSent", "DateDue", "DateReceived", "FollowupDate"})
                unreadable = unreadable || (rs->Fields(date).typeId() == QMetaType::QString &&
                                            !rs->Fields(date).toString().isEmpty());
        } catch (const VbError&) {
            unreadable = true;
        }
        if (unreadable) {
            const QString sent = plain("DateSent");
            lists["lvAll"] << QStringList{plain("RebateID"), "",
                                          (sent.isEmpty() ? "No date" : sent) + ": " +
                                              plain("RebateName"),
                                          plain("ProductName"), sent.isEmpty() ? "No Date" : sent}
                                  .join('|');
            continue;
        }
        if (!listed.contains(status))
            continue;
        const QVariant sent = rs->Fields("DateSent");
        const QString name = CStr(NZ(rs->Fields("RebateName")));
        const char* dateColumn = status == "Overdue"    ? "DateDue"
                                 : status == "Paid"     ? "DateReceived"
                                 : status == "Followup" ? "FollowupDate"
                                                        : "DateSent";
        const QVariant date = rs->Fields(dateColumn);
        const QString row =
            QStringList{CStr(NZ(rs->Fields("RebateID"))), status,
                        IsBlank(sent) ? "No date: " + name : CStr(sent) + ": " + name,
                        CStr(NZ(rs->Fields("ProductName"))),
                        IsBlank(date) ? "No Date" : Format(date, "yyyy-mm-dd")}
                .join('|');
        lists["lv" + status] << row;
        lists["lvAll"] << row;
    }
    for (QStringList& rows : lists)
        rows.sort();
    return lists;
}

// One figure summed or counted by SQL over the rows the statistics count; -1 when the SQL
// fails.
qint64 Figure(const QString& expression) {
    QSqlQuery query(gDatabase->Connection());
    if (!query.exec("SELECT coalesce(" + expression + ", 0) FROM Rebates WHERE Deleted = False") ||
        !query.next())
        return -1;
    return query.value(0).toLongLong();
}

// A money column's value where it is stored as a number, else Null: anything else counts
// nowhere.
QString Money(const QString& column) {
    return QString("iif(typeof(%1) = 'integer', %1, NULL)").arg(column);
}

} // namespace

class tst_listload : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    // A store of every status with values of every odd kind: the lists and the statistics
    // read from the few columns they need agree, row by row, with what the record set and SQL
    // give for the whole rows.
    void listsAndStatisticsAgreeWithTheStore() {
        Fixture fixture;
        fixture.OpenDatabase(GenerateRebates(kRecords, 20261125));
        // Record n is generated with status n % 7: Unsent, Pending, Overdue, Paid, Followup,
        // Rejected, Deleted.
        Store(10, "AmountReceived", "lots");
        Store(21, "PurchasePrice", "cheap");
        Store(29, "DateSent", "2024-02-30");
        Store(30, "DateDue", "0000-01-01");
        Store(32, "FollowupDate", "tomorrow");
        Store(39, "DateReceived", "soon");
        Store(40, "Rejected", "yes");
        Store(44, "DateDue", 46000); // a day number, not a date's text
        Store(50, "RebateName", 42);
        Store(51, "ProductName", 1.5);
        Store(52, "RebateName", QVariant());
        Store(53, "ProductName", "");
        Store(57, "DateSent", "");
        Store(58, "DateSent", "2026-2-03");
        Store(61, "RebateID", "Ünïcode ✓");
        Store(64, "Rejected", 2);
        Store(65, "Rejected", QVariant());
        Store(66, "Deleted", QVariant());
        Store(67, "Deleted", 2);
        Store(68, "Deleted", "yes");
        Store(71, "FollowupPostage", "x");
        Store(72, "RebateAmount", "n/a");

        QMdiArea area;
        frmSwitchboard* board = &frmSwitchboard::Load();
        QMdiSubWindow* window = area.addSubWindow(board);
        area.show();
        board->show();
        QTRY_VERIFY(!board->Timer1->isActive());
        const QMap<QString, QStringList> expected = ExpectedRows();
        for (ListView* lv : board->RecordLists()) {
            const QStringList rows = Rows(lv);
            const QStringList wanted = expected.value(lv->Name());
            QVERIFY2(rows.size() > 400, qPrintable(lv->Name()));
            QCOMPARE(rows.size(), wanted.size());
            for (int i = 0; i < rows.size(); ++i)
                QCOMPARE(rows[i], wanted[i]);
        }
        delete window;
        // The rows listed as stored (no icon) are named in one log entry, told in one box.
        const QString log = fixture.LogText();
        QCOMPARE(fixture.Desktop().boxes.size(), 1);
        for (const QString& row : expected.value("lvAll"))
            QCOMPARE(log.contains(row.section('|', 0, 0)), row.section('|', 1, 1).isEmpty());

        // Opened, a record shows what can be shown; saved, only the user's change is written
        // and the stored text stays.
        for (const auto& [record, column] :
             {std::pair{10, "AmountReceived"}, {29, "DateSent"}, {40, "Rejected"}}) {
            const QVariantMap before = ReadRawRebate(Key(record));
            clsRebate::SetSelectedRebateIDSource([id = Key(record)] { return id; });
            {
                clsRebate rebate;
                QCOMPARE(rebate.RebateName(), before.value("RebateName").toString());
                rebate.SetRemarks("checked");
                rebate.Update();
            }
            const QVariantMap stored = ReadRawRebate(Key(record));
            QCOMPARE(stored.value("Remarks").toString(), QString("checked"));
            QCOMPARE(stored.value(column), before.value(column));
        }

        clsRebateStats stats;
        QVERIFY(stats.GetStats());
        const auto sum = [](const QString& column) {
            return Figure("sum(" + Money(column) + ")");
        };
        QCOMPARE(stats.CountPurchases(), Figure("count(*)"));
        QCOMPARE(stats.TotalSpent().Raw(), sum("PurchasePrice"));
        QCOMPARE(stats.TotalCoupons().Raw(), sum("CouponAmount"));
        QCOMPARE(stats.TotalPostage().Raw(), sum("PostagePrice"));
        QCOMPARE(stats.TotalFollowupPostage().Raw(), sum("FollowupPostage"));
        QCOMPARE(stats.TotalReceived().Raw(), sum("AmountReceived"));
        const QString rejected = "typeof(Rejected) = 'integer' AND Rejected <> 0";
        const QString received = Money("AmountReceived");
        QCOMPARE(stats.CountRejections(), Figure("sum(" + rejected + ")"));
        QCOMPARE(stats.TotalRejected().Raw(),
                 Figure("sum(iif(" + rejected + ", " + Money("RebateAmount") + ", 0))"));
        QCOMPARE(stats.CountPending(),
                 Figure("sum(NOT (" + rejected + ") AND " + received + " <= 0)"));
        QCOMPARE(stats.CountReceived(), Figure("sum(" + received + " > 0)"));
        QCOMPARE(stats.CountFollowups(), Figure("sum(" + Money("FollowupPostage") + " > 0)"));
        QCOMPARE(stats.TotalOutstanding().Raw(),
                 Figure("sum(iif(" + received + " = 0 AND typeof(Rejected) = 'integer' AND " +
                        "Rejected = 0, " + Money("RebateAmount") + ", 0))"));
    }
};

QTEST_MAIN(tst_listload)
#include "tst_listload.moc"
