#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "common/core/Settings.h"
#include "common/ui/ListView.h"
#include "common/ui/Toolbar.h"
#include "switchboard/frmSwitchboard.h"

#include <QTest>

class tst_alarm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void openingPage_data() {
        QTest::addColumn<QList<int>>("dueInDays"); // one rebate, sent, for each
        QTest::addColumn<QString>("chkAlarm");     // a null text: never stored
        QTest::addColumn<QString>("page");
        QTest::newRow("overdue, never stored") << QList<int>{-1, 9} << QString() << "Overdue";
        QTest::newRow("overdue, on") << QList<int>{-1, 9} << "1"
                                     << "Overdue";
        QTest::newRow("overdue, off") << QList<int>{-1, 9} << "0"
                                      << "New";
        QTest::newRow("none overdue, on") << QList<int>{9} << "1"
                                          << "New";
        QTest::newRow("empty table") << QList<int>{} << QString() << "New";
        QTest::newRow("due today isn't overdue") << QList<int>{0} << "1"
                                                 << "New";
    }

    void openingPage() {
        QFETCH(QList<int>, dueInDays);
        QFETCH(QString, chkAlarm);
        QFETCH(QString, page);
        Fixture fixture;
        QList<RebateRow> rows;
        for (int days : dueInDays) {
            const QDate due = Fixture::kToday.addDays(days);
            rows << RebateRow{
                .RebateID = QString::number(days), .DateSent = due.addDays(-56), .DateDue = due};
        }
        fixture.OpenDatabase(rows);
        if (!chkAlarm.isNull())
            SaveSetting(kAppTitle, "Options", "chkAlarm", chkAlarm);

        ProgramWindow program;
        QCOMPARE(program.CurrentTab(), page);
        frmSwitchboard& sb = program.Switchboard();
        // The page, the toolbar and the menus follow as for a click on the tab.
        QVERIFY(sb.GetCurrentLV()->isVisible());
        const bool onOverdue = page == "Overdue";
        QCOMPARE(sb.GetCurrentLV(), onOverdue ? sb.lvOverdue : sb.lvNew);
        QCOMPARE(sb.xToolbar->Buttons("Delete").Enabled(), onOverdue);
        QCOMPARE(sb.mnuEditRebate->isEnabled(), onOverdue);
        QVERIFY(fixture.Desktop().boxes.isEmpty());
    }
};

QTEST_MAIN(tst_alarm)
#include "tst_alarm.moc"
