#include "Fixture.h"
#include "ListRows.h"
#include "RebateRows.h"
#include "app/AppSettings.h"
#include "app/clsRebate.h"
#include "app/clsRebateStats.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSqlQuery>
#include <QTest>

namespace {
// Puts text where the column wants money, a date or a Boolean, as another program might.
void StoreAsText(const QString& id, const QString& column, const QString& text) {
    QSqlQuery query(gDatabase->Connection());
    QVERIFY(query.prepare(QString("UPDATE Rebates SET %1 = ? WHERE RebateID = ?").arg(column)));
    query.addBindValue(text);
    query.addBindValue(id);
    QVERIFY(query.exec());
    QCOMPARE(query.numRowsAffected(), 1);
}

} // namespace

class tst_badrows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        const QDate sent(2026, 11, 1);
        mFixture->OpenDatabase({
            RebateRow{.RebateID = "1", .RebateName = "First", .DateSent = sent},
            RebateRow{.RebateID = "2", .RebateName = "Bad", .DateSent = sent},
            RebateRow{.RebateID = "3", .RebateName = "Third", .DateSent = sent},
        });
    }
    void cleanup() { mFixture.reset(); }

    // One row holding a value its column can't: the rows after it load, the statistics
    // still count, and the bad row is shown as stored.
    void badRowDoesNotStopTheLoad_data() {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("listedAsStored"); // else listed by its status as usual
        const auto row = [](const char* name, const char* column, const char* text, bool asStored) {
            QTest::newRow(name) << QString(column) << QString(text) << asStored;
        };
        row("text for money received", "AmountReceived", "lots", true);
        row("text for a price", "PurchasePrice", "cheap", false);
        row("February 30", "DateSent", "2024-02-30", true);
        row("year zero", "DateDue", "0000-01-01", true);
        row("tomorrow", "FollowupDate", "tomorrow", true);
        row("yes for rejected", "Rejected", "yes", true);
    }
    void badRowDoesNotStopTheLoad() {
        QFETCH(QString, column);
        QFETCH(QString, text);
        QFETCH(bool, listedAsStored);
        StoreAsText("2", column, text);

        QMdiArea area;
        frmSwitchboard* board = &frmSwitchboard::Load();
        QMdiSubWindow* window = area.addSubWindow(board);
        area.show();
        board->show();
        QTRY_VERIFY(!board->Timer1->isActive());
        QCOMPARE(SortedIDs(board->lvAll), QStringList({"1", "2", "3"}));
        QCOMPARE(SortedIDs(board->lvPending),
                 listedAsStored ? QStringList({"1", "3"}) : QStringList({"1", "2", "3"}));
        const QString log = mFixture->LogText();
        QCOMPARE(log.count("RebateID 2"), listedAsStored ? 1 : 0);
        QCOMPARE(mFixture->Desktop().boxes.size(), listedAsStored ? 1 : 0);
        delete window;

        clsRebateStats stats;
        QVERIFY(stats.GetStats());
        QCOMPARE(stats.CountPurchases(), 3);

        // Opened, the record shows what can be shown; saved, only the user's change is
        // written and the stored text stays.
        clsRebate::SetSelectedRebateIDSource([] { return QString("2"); });
        {
            clsRebate rebate;
            QCOMPARE(rebate.RebateName(), QString("Bad"));
            rebate.SetRemarks("checked");
            rebate.Update();
        }
        const QVariantMap stored = ReadRawRebate("2");
        QCOMPARE(stored.value("Remarks").toString(), QString("checked"));
        QCOMPARE(stored.value(column).toString(), text);
        QCOMPARE(CountRebates(), 3);
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_MAIN(tst_badrows)
#include "tst_badrows.moc"
