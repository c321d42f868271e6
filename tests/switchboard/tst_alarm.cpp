#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "common/core/Settings.h"
#include "common/ui/ListView.h"
#include "common/ui/Toolbar.h"
#include "switchboard/frmSwitchboard.h"

#include <QTest>

namespace {

// Sent and due on the given date: overdue once that date has passed.
RebateRow DueOn(const QString& id, const QDate& due) {
    return {.RebateID = id,
            .RebateName = QStringLiteral("Due ") + id,
            .DateSent = due.addDays(-56),
            .DateDue = due};
}

} // namespace

class tst_alarm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void openingPage_data() {
        QTest::addColumn<QList<RebateRow>>("rows");
        QTest::addColumn<QString>("chkAlarm"); // a null text: never stored
        QTest::addColumn<QString>("page");

        const QDate today = Fixture::kToday;
        const QList<RebateRow> overdue{DueOn("1", today.addDays(-1)), DueOn("2", today.addDays(9))};
        const QList<RebateRow> notOverdue{DueOn("2", today.addDays(9))};
        const auto row = [](const char* name, const QList<RebateRow>& rows, const QString& alarm,
                            const char* page) {
            QTest::newRow(name) << rows << alarm << page;
        };
        row("overdue, never stored", overdue, QString(), "Overdue");
        row("overdue, on", overdue, "1", "Overdue");
        row("overdue, off", overdue, "0", "New");
        row("none overdue, on", notOverdue, "1", "New");
        row("empty table", {}, QString(), "New");
        row("due today isn't overdue", {DueOn("3", today)}, "1", "New");
    }

    void openingPage() {
        QFETCH(QList<RebateRow>, rows);
        QFETCH(QString, chkAlarm);
        QFETCH(QString, page);
        Fixture fixture;
        fixture.OpenDatabase();
        InsertRebates(rows);
        if (!chkAlarm.isNull())
            SaveSetting(kAppTitle, QStringLiteral("Options"), QStringLiteral("chkAlarm"), chkAlarm);

        ProgramWindow program;

        QCOMPARE(program.CurrentTab(), page);
        frmSwitchboard& sb = program.Switchboard();
        // The page, the toolbar and the menus follow as for a click on the tab.
        QVERIFY(sb.GetCurrentLV()->isVisible());
        const bool onOverdue = page == QLatin1String("Overdue");
        QCOMPARE(sb.GetCurrentLV(), onOverdue ? sb.lvOverdue : sb.lvNew);
        QCOMPARE(sb.xToolbar->Buttons(QStringLiteral("Delete")).Enabled(), onOverdue);
        QCOMPARE(sb.mnuEditRebate->isEnabled(), onOverdue);
        QVERIFY(fixture.Desktop().boxes.isEmpty());
    }
};

QTEST_MAIN(tst_alarm)
#include "tst_alarm.moc"
