#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "app/Notifier.h"
#include "common/core/Settings.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "maintenance/frmOptions.h"
#include "rebateform/frmRebate.h"
#include "switchboard/DeadlinePanel.h"
#include "switchboard/frmSwitchboard.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

namespace {
const QDate kToday = Fixture::kToday;

// An unsent claim whose postmark deadline is `days` from today.
RebateRow ExpiresIn(const QString& id, int days) {
    RebateRow row = RouterRow(id, "Claim " + id);
    row.ExpDate = kToday.addDays(days);
    return row;
}

// The panel's rows as "days left | rebate | expiration date".
QStringList PanelRows(const DeadlinePanel* panel) {
    QStringList rows;
    for (int i = 0; i < panel->lvDeadlines->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = panel->lvDeadlines->topLevelItem(i);
        rows << item->text(0) + " | " + item->text(1) + " | " + item->text(3);
    }
    return rows;
}
} // namespace

class tst_deadlines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void rows_data() {
        QTest::addColumn<QList<RebateRow>>("rows");
        QTest::addColumn<QString>("days"); // the stored option; a null text: never stored
        QTest::addColumn<QStringList>("shown");

        RebateRow sent = ExpiresIn("sent", 1);
        sent.DateSent = kToday.addDays(-1);
        RebateRow deleted = ExpiresIn("deleted", 1);
        deleted.Deleted = true;
        RebateRow noDate = ExpiresIn("no date", 0);
        noDate.ExpDate = std::nullopt;
        QTest::newRow("most urgent first, the late ones on top")
            << QList<RebateRow>{ExpiresIn("a", 7), ExpiresIn("b", -3), ExpiresIn("c", 0),
                                ExpiresIn("d", 1), ExpiresIn("e", 8),  ExpiresIn("f", -1)}
            << QString()
            << QStringList{"3 days late | Claim b | 11/20/2026",
                           "1 day late | Claim f | 11/22/2026", "Today | Claim c | 11/23/2026",
                           "1 day | Claim d | 11/24/2026", "7 days | Claim a | 11/30/2026"};
        QTest::newRow("sent, deleted or without a date: not shown")
            << QList<RebateRow>{sent, deleted, noDate, ExpiresIn("g", 2)} << QString()
            << QStringList{"2 days | Claim g | 11/25/2026"};
        QTest::newRow("more than 30 days late: given up")
            << QList<RebateRow>{ExpiresIn("a", -31), ExpiresIn("b", -30)} << QString()
            << QStringList{"30 days late | Claim b | 10/24/2026"};
        QTest::newRow("a stored number out of range is the default")
            << QList<RebateRow>{ExpiresIn("a", 7), ExpiresIn("b", 8)} << "-4"
            << QStringList{"7 days | Claim a | 11/30/2026"};
    }
    void rows() {
        QFETCH(QList<RebateRow>, rows);
        QFETCH(QString, days);
        QFETCH(QStringList, shown);
        Fixture fixture;
        fixture.OpenDatabase(rows);
        if (!days.isNull())
            SaveSetting(kAppTitle, "Options", "DeadlineDays", days);
        ProgramWindow program;
        DeadlinePanel* panel = program.Switchboard().Deadlines();
        QVERIFY(panel->isVisible());
        QCOMPARE(PanelRows(panel), shown);
        QVERIFY(panel->lblDeadlines->text().startsWith(
            QString("Postmark deadlines: %1 unsent rebate").arg(shown.size())));
    }

    // Enter or a double click opens the claim in the rebate form.
    void opensTheClaim_data() {
        QTest::addColumn<bool>("doubleClick");
        QTest::newRow("Enter") << false;
        QTest::newRow("double click") << true;
    }
    void opensTheClaim() {
        QFETCH(bool, doubleClick);
        Fixture fixture;
        fixture.OpenDatabase({ExpiresIn("1", 5), ExpiresIn("2", 2)});
        ProgramWindow program;
        QTreeWidget* list = program.Switchboard().Deadlines()->lvDeadlines;
        QTreeWidgetItem* second = list->topLevelItem(1);
        QCOMPARE(second->text(1), QString("Claim 1"));
        list->setCurrentItem(second);
        list->setFocus();
        if (doubleClick) {
            // A double click as the window system delivers it: a click, then the second press.
            const QPoint at = list->visualItemRect(second).center();
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
        } else {
            QTest::keyClick(list, Qt::Key_Return);
        }
        frmRebate* form = frmRebate::Instance();
        QVERIFY(form);
        QCOMPARE(form->RebateID(), QString("1"));
        QCOMPARE(program.CurrentTab(), QString("All"));
        form->Unload();
    }

    // What is saved or deleted elsewhere reaches the panel at once.
    void followsTheRecords() {
        Fixture fixture;
        fixture.OpenDatabase({ExpiresIn("1", 5), ExpiresIn("2", 2)});
        ProgramWindow program;
        DeadlinePanel* panel = program.Switchboard().Deadlines();
        gDatabase->Execute("UPDATE Rebates SET DateSent = '2026-11-23' WHERE RebateID = '2'");
        Q_EMIT Notifier::Instance().RecordSaved("2");
        QCOMPARE(PanelRows(panel), QStringList{"5 days | Claim 1 | 11/28/2026"});
        gDatabase->Execute("UPDATE Rebates SET Deleted = True WHERE RebateID = '1'");
        Q_EMIT Notifier::Instance().RecordDeleted("1");
        QCOMPARE(PanelRows(panel), QStringList{});
        QVERIFY(!panel->lvDeadlines->isVisible());
        QCOMPARE(panel->lblDeadlines->text(),
                 QString("Postmark deadlines: no unsent rebate expires within 7 days."));
    }

    // The options turn the panel off and set its days; OK takes effect at once.
    void options_data() {
        QTest::addColumn<bool>("on");
        QTest::addColumn<int>("days");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("off") << false << 7 << QStringList{};
        QTest::newRow("two days") << true << 2 << QStringList{"1 day | Claim 2 | 11/24/2026"};
        QTest::newRow("none but the late") << true << 0 << QStringList{};
    }
    void options() {
        QFETCH(bool, on);
        QFETCH(int, days);
        QFETCH(QStringList, shown);
        Fixture fixture;
        fixture.OpenDatabase({ExpiresIn("1", 5), ExpiresIn("2", 1)});
        ProgramWindow program;
        DeadlinePanel* panel = program.Switchboard().Deadlines();
        {
            frmOptions options;
            QVERIFY(options.chkDeadlines->isChecked());
            QCOMPARE(options.DeadlineDays->value(), 7);
            options.chkDeadlines->setChecked(on);
            QCOMPARE(options.DeadlineDays->isEnabled(), on);
            options.DeadlineDays->setValue(days);
            QTest::mouseClick(options.cmdOK, Qt::LeftButton);
        }
        QCOMPARE(GetSetting(kAppTitle, "Options", "chkDeadlines"), on ? "1" : "0");
        QCOMPARE(GetSetting(kAppTitle, "Options", "DeadlineDays"), QString::number(days));
        QCOMPARE(panel->isVisible(), on);
        QCOMPARE(PanelRows(panel), shown);
    }
};

QTEST_MAIN(tst_deadlines)
#include "tst_deadlines.moc"
