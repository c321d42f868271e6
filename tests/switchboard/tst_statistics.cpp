#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "common/ui/Forms.h"
#include "switchboard/SavingsPage.h"
#include "switchboard/StatisticsPage.h"
#include "switchboard/frmSwitchboard.h"

#include <QAbstractBarSeries>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QLabel>
#include <QPointer>
#include <QTest>

namespace {

// Every rule of the statistics, worked out by hand in the comments. Money that doesn't round
// to the cent shows that the totals add the figures as shown.
QList<RebateRow> EveryRuleRows() {
    const auto null = std::nullopt;
    // Key, spent, expected, postage, coupon, received, followup postage, rejected, deleted.
    QList<RebateRow> rows{
        MoneyRow("1", 19.99, 10.0, 0.37, 2.0, 10.0, 0.0),       // paid in full
        MoneyRow("2", 49.95, 15.0, 0.41, 0.0, 0.0, 0.0),        // unpaid: pending and outstanding
        MoneyRow("3", 100.0, 25.0, 0.39, 5.5, 0.0, 0.37, true), // rejected, none came, followed up
        MoneyRow("4", 30.0, 7.0, 0.37, 0.0, 3.0, 0.0, true),    // rejected, and yet money came
        // Null in every money column and in Rejected: counted as a purchase only.
        MoneyRow("5", null, null, null, null, null, null, null),
        // Unpaid with no expected amount: pending, adds nothing outstanding.
        MoneyRow("6", 5.0, null, 0.0, 0.0, 0.0, 0.0),
        MoneyRow("7", 59.99, 20.0, 0.37, 0.0, 12.5, 0.60), // paid less than expected, followed up
        // Deleted, and Deleted Null: counted nowhere.
        MoneyRow("8", 1000.0, 100.0, 0.0, 0.0, 0.0, 0.0, false, true),
        MoneyRow("9", 500.0, 50.0, 0.0, 0.0, 50.0, 0.0, false, null),
        // Rejected Null with nothing received: pending, but not outstanding.
        MoneyRow("10", 8.0, 4.0, 0.0, 0.0, 0.0, 0.0, null),
        // Sub-cent money: each figure it touches rounds down on the page.
        MoneyRow("11", 1.0049, 1.0, 0.0049, 0.0, 0.0, 0.0049),
    };
    rows[0].DateSent = QDate(2026, 9, 1);
    rows[0].DateReceived = QDate(2026, 10, 1);
    return rows;
}

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

class tst_statistics : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    // The Statistics page's figures; the Savings page charts the money by month and by state.
    void pages_data() {
        QTest::addColumn<QList<RebateRow>>("rows");
        QTest::addColumn<QStringList>("figures"); // lblStatFigures(0) to (14); none: not read
        QTest::addColumn<QStringList>("months");  // "month: received outstanding"
        QTest::addColumn<QStringList>("states");  // "state (count): amount", from the bottom up

        // Spent 19.99 + 49.95 + 100 + 30 + 5 + 59.99 + 8 + 1.0049 = 273.9349; postage 1.9149;
        // followup postage 0.9749. Total Expenditures adds the shown 0.97 + 1.91 + 273.93 =
        // 276.81, where the unrounded sum would show 276.82. Money that came for a rejected
        // claim makes it Paid.
        QTest::newRow("every rule")
            << EveryRuleRows() << QStringList{"$273.93", "$7.50",  "$1.91",   "$0.97",  "$25.50",
                                              "9",       "3",      "4",       "3",      "2",
                                              "$32.00",  "$16.00", "$276.81", "$41.50", "$49.00"}
            << QStringList{"No date: 15.5 16", "Oct 2026: 10 0"}
            << QStringList{"Rejected (1): 25", "Paid (3): 25.5", "Unsent (5): 20"};
        QTest::newRow("empty table")
            << QList<RebateRow>{}
            << QStringList(5, "$0.00") + QStringList(5, "0") + QStringList(5, "$0.00")
            << QStringList{} << QStringList{};

        RebateRow rejected = Row("re", 25, 0, QDate(2026, 8, 1));
        rejected.Rejected = true;
        RebateRow deleted = Row("de", 50, 50, {}, {}, QDate(2026, 11, 2));
        deleted.Deleted = true;
        QTest::newRow("every state")
            << QList<RebateRow>{Row("p1", 10, 10, QDate(2026, 9, 1), QDate(2026, 10, 27),
                                    QDate(2026, 10, 1)),
                                Row("p2", 20, 12.5, QDate(2026, 10, 1), {}, QDate(2026, 11, 5)),
                                Row("pe", 15, 0, QDate(2026, 11, 1), QDate(2026, 12, 10)),
                                Row("ov", 30, 0, QDate(2026, 9, 1), QDate(2026, 10, 27)), rejected,
                                deleted, Row("un", 7, 0),
                                // Nothing received and Null: unsent, but not outstanding, as
                                // the statistics count it.
                                Row("nu", 4, std::nullopt)}
            << QStringList{}
            << QStringList{"No date: 0 7", "Oct 2026: 10 30", "Nov 2026: 12.5 0", "Dec 2026: 0 15"}
            << QStringList{"Rejected (1): 25", "Paid (2): 22.5", "Overdue (1): 30",
                           "Pending (1): 15", "Unsent (2): 11"};
        QTest::newRow("months between without money")
            << QList<RebateRow>{Row("p1", 10, 10, QDate(2026, 9, 1), {}, QDate(2026, 10, 1)),
                                Row("ja", 5, 5, {}, {}, QDate(2027, 1, 4))}
            << QStringList{}
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
            << monthly << QStringList{} << months << QStringList{"Paid (26): 26"};
    }

    void pages() {
        QFETCH(QList<RebateRow>, rows);
        QFETCH(QStringList, figures);
        QFETCH(QStringList, months);
        QFETCH(QStringList, states);
        Fixture fixture;
        fixture.OpenDatabase(rows);
        ProgramWindow program;
        StatisticsPage* page = program.Switchboard().Statistics();
        program.ClickTab(QStringLiteral("Statistics"));
        QStringList shown;
        for (int i = 0; i < StatisticsPage::kFigureCount; ++i)
            shown << page->lblStatFigures(i)->text();
        if (!figures.isEmpty())
            QCOMPARE(shown, figures);
        QCOMPARE(page->lblStatFigures(12)->accessibleName(), QStringLiteral("Total Expenditures"));
        QCOMPARE(StatusText(), QStringLiteral("Ready..."));

        program.ClickTab("Savings");
        SavingsPage* savings = program.Switchboard().Savings();
        QCOMPARE(Bars(savings->chtMonths), months);
        QCOMPARE(Bars(savings->chtStates), states);
        // Each visit draws the charts anew and frees the axes drawn before.
        QList<QPointer<QAbstractAxis>> drawn;
        for (QChartView* chart : {savings->chtMonths, savings->chtStates})
            for (QAbstractAxis* axis : chart->chart()->axes())
                drawn.append(axis);
        program.ClickTab("Statistics");
        program.ClickTab("Savings");
        for (const QPointer<QAbstractAxis>& axis : drawn)
            QVERIFY(axis.isNull());
        QCOMPARE(Bars(savings->chtMonths), months);
        QCOMPARE(savings->lblSavingsTotals->text(),
                 QString("Received: %1    Outstanding: %2").arg(shown[4], shown[11]));
        QVERIFY(fixture.Desktop().boxes.isEmpty());
    }
};

QTEST_MAIN(tst_statistics)
#include "tst_statistics.moc"
