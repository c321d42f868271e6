#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "common/ui/Toolbar.h"
#include "switchboard/SavingsPage.h"
#include "switchboard/StatisticsPage.h"
#include "switchboard/frmSwitchboard.h"

#include <QAbstractBarSeries>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QLabel>
#include <QTest>

namespace {
// Each category of a chart as "category: value of each set".
QStringList Bars(const QChartView* view) {
    QChart* chart = view->chart();
    auto* series = qobject_cast<QAbstractBarSeries*>(chart->series().value(0));
    QBarCategoryAxis* axis = nullptr;
    for (QAbstractAxis* candidate : chart->axes())
        axis = axis ? axis : qobject_cast<QBarCategoryAxis*>(candidate);
    if (!series || !axis)
        return {"no bars"};
    QStringList bars;
    const QStringList categories = axis->categories();
    for (int i = 0; i < categories.size(); ++i) {
        QString bar = categories[i] + ":";
        for (const QBarSet* set : series->barSets())
            bar += " " + QString::number(set->at(i));
        bars << bar;
    }
    return bars;
}

RebateRow Row(const QString& id, double rebate, std::optional<double> received,
              std::optional<QDate> sent = {}, std::optional<QDate> due = {},
              std::optional<QDate> receivedOn = {}) {
    return {.RebateID = id,
            .RebateAmount = rebate,
            .DateSent = sent,
            .DateDue = due,
            .AmountReceived = received,
            .DateReceived = receivedOn};
}
} // namespace

class tst_savings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void chart_data() {
        QTest::addColumn<QList<RebateRow>>("rows");
        QTest::addColumn<QStringList>("months"); // "month: received outstanding"
        QTest::addColumn<QStringList>("states"); // "state (count): amount", from the bottom up

        const RebateRow paid1 =
            Row("p1", 10, 10, QDate(2026, 9, 1), QDate(2026, 10, 27), QDate(2026, 10, 1));
        RebateRow rejected = Row("re", 25, 0, QDate(2026, 8, 1));
        rejected.Rejected = true;
        RebateRow deleted = Row("de", 50, 50, {}, {}, QDate(2026, 11, 2));
        deleted.Deleted = true;
        QTest::newRow("every state")
            << QList<RebateRow>{paid1,
                                Row("p2", 20, 12.5, QDate(2026, 10, 1), {}, QDate(2026, 11, 5)),
                                Row("pe", 15, 0, QDate(2026, 11, 1), QDate(2026, 12, 10)),
                                Row("ov", 30, 0, QDate(2026, 9, 1), QDate(2026, 10, 27)), rejected,
                                deleted, Row("un", 7, 0),
                                // Nothing received and Null: unsent, but not outstanding, as
                                // the statistics count it.
                                Row("nu", 4, std::nullopt)}
            << QStringList{"No date: 0 7", "Oct 2026: 10 30", "Nov 2026: 12.5 0", "Dec 2026: 0 15"}
            << QStringList{"Rejected (1): 25", "Paid (2): 22.5", "Overdue (1): 30",
                           "Pending (1): 15", "Unsent (2): 11"};

        QTest::newRow("months between without money")
            << QList<RebateRow>{paid1, Row("ja", 5, 5, {}, {}, QDate(2027, 1, 4))}
            << QStringList{"Oct 2026: 10 0", "Nov 2026: 0 0", "Dec 2026: 0 0", "Jan 2027: 5 0"}
            << QStringList{"Paid (2): 15"};

        QList<RebateRow> monthly;
        QStringList months{"Earlier: 2 0"};
        for (int i = 0; i < 26; ++i) {
            const QDate received = QDate(2024, 9, 15).addMonths(i);
            monthly << Row(QString::number(i), 1, 1, QDate(2024, 9, 1).addMonths(i), {}, received);
            if (i >= 2)
                months << received.toString("MMM yyyy") + ": 1 0";
        }
        QTest::newRow("more than 24 months: the oldest as Earlier")
            << monthly << months << QStringList{"Paid (26): 26"};
        QTest::newRow("no rebates") << QList<RebateRow>{} << QStringList{} << QStringList{};
    }
    void chart() {
        QFETCH(QList<RebateRow>, rows);
        QFETCH(QStringList, months);
        QFETCH(QStringList, states);
        Fixture fixture;
        fixture.OpenDatabase(rows);
        ProgramWindow program;
        frmSwitchboard& board = program.Switchboard();
        program.ClickTab("Statistics");
        const QString received = board.Statistics()->lblStatFigures(4)->text();
        const QString outstanding = board.Statistics()->lblStatFigures(11)->text();

        program.ClickTab("Savings");

        SavingsPage* page = board.Savings();
        QVERIFY(page->isVisible());
        QCOMPARE(Bars(page->chtMonths), months);
        QCOMPARE(Bars(page->chtStates), states);
        // The same money as the statistics.
        QCOMPARE(page->lblSavingsTotals->text(),
                 QString("Received: %1    Outstanding: %2")
                     .arg(received.isEmpty() ? "$0.00" : received,
                          outstanding.isEmpty() ? "$0.00" : outstanding));
        // No list on this page: the list commands are off.
        QVERIFY(!board.GetCurrentLV());
        QVERIFY(!board.mnuEditRebate->isEnabled());
        QVERIFY(!board.xToolbar->Buttons("Details").Enabled());
        QVERIFY(fixture.Desktop().boxes.isEmpty());
    }
};

QTEST_MAIN(tst_savings)
#include "tst_savings.moc"
