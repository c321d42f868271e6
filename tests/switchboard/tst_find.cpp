#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "switchboard/frmFind.h"
#include "switchboard/frmSwitchboard.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {

// One record in each status. Their rows read (dates as the lists write them):
//   Unsent    "No date: Alpha Unsent"
//   Pending   "11/10/2026: Bravo Pending", "11/12/2026: Hotel Pending"
//   Overdue   "8/1/2026: Charlie Overdue"
//   Paid      "3/15/2000: Delta Paid"
//   Followup  "7/1/2026: Echo Followup"
//   Rejected  "6/1/2026: Foxtrot Rejected"
// and each again in All.
QList<RebateRow> OneOfEach() {
    const auto row = [](const char* id, const char* name, std::optional<QDate> sent = {},
                        std::optional<QDate> due = {}) {
        return RebateRow{.RebateID = id,
                         .RebateName = QString(name),
                         .ProductName = "Product",
                         .DateSent = sent,
                         .DateDue = due};
    };
    QList<RebateRow> rows{row("1", "Alpha Unsent"),
                          row("2", "Bravo Pending", QDate(2026, 11, 10), QDate(2027, 1, 5)),
                          row("3", "Charlie Overdue", QDate(2026, 8, 1), QDate(2026, 9, 26)),
                          row("4", "Delta Paid", QDate(2000, 3, 15)),
                          row("5", "Echo Followup", QDate(2026, 7, 1)),
                          row("6", "Foxtrot Rejected", QDate(2026, 6, 1)),
                          row("8", "Hotel Pending", QDate(2026, 11, 12), QDate(2027, 1, 7))};
    rows[3].AmountReceived = 5.0;
    rows[3].DateReceived = QDate(2000, 5, 1);
    rows[4].FollowupDate = QDate(2026, 11, 1);
    rows[5].Rejected = true;
    return rows;
}

QStringList SelectedRows(ListView* lv) {
    QStringList selected;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        if (lv->ListItems().Item(i)->Selected())
            selected << lv->ListItems().Item(i)->Text();
    return selected;
}

} // namespace

class tst_find : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void init() {
        mFixture = std::make_unique<Fixture>();
        mFixture->OpenDatabase();
        // The Switchboard opens on "New" even with a rebate overdue.
        SaveSetting(kAppTitle, "Options", "chkAlarm", "0");
        InsertRebates(OneOfEach());
        mProgram = std::make_unique<ProgramWindow>();
    }

    void cleanup() {
        delete frmFind::Instance();
        mProgram.reset();
        mFixture.reset();
    }

    void searches_data() {
        QTest::addColumn<QString>("page");         // the tab the searches start from
        QTest::addColumn<QStringList>("searches"); // typed, each followed by Find
        QTest::addColumn<QStringList>("hits");     // "tab | row" after each; "" for no match

        const auto row = [](const char* name, const char* page, const char* text, const char* hit) {
            QTest::newRow(name) << QString(page) << QStringList{text} << QStringList{hit};
        };
        // The ring, from each page.
        row("New starts at Unsent", "New", "alpha", "Unsent | No date: Alpha Unsent");
        row("Pending reaches All before Unsent", "Pending", "alpha", "All | No date: Alpha Unsent");
        // Find again from the hit: the same record in All, then back in Pending, since a search
        // from All never wraps into the rows above its start.
        QTest::newRow("find again")
            << "Pending" << QStringList{"hotel", "hotel", "hotel"}
            << QStringList{"Pending | 11/12/2026: Hotel Pending", "All | 11/12/2026: Hotel Pending",
                           "Pending | 11/12/2026: Hotel Pending"};

        // The patterns, from the New page.
        row("date prefix", "New", "2000", "Paid | 3/15/2000: Delta Paid");
        row("star", "New", "ch*ue", "Overdue | 8/1/2026: Charlie Overdue");
        row("the product isn't searched", "New", "product", "");
        row("no match, quoted as typed", "New", "ZuLu", "");
    }

    void searches() {
        QFETCH(QString, page);
        QFETCH(QStringList, searches);
        QFETCH(QStringList, hits);
        mProgram->ClickTab(page);

        WithModalFind([&](frmFind& find) {
            for (qsizetype i = 0; i < searches.size(); ++i) {
                Search(find, searches[i]);
                QCOMPARE(StatusText(), QStringLiteral("Ready..."));
                if (hits[i].isEmpty()) {
                    QCOMPARE(mFixture->Desktop().Shown().last(),
                             "No Matching Rebate Found | 64 | Cannot find '" + searches[i] +
                                 "' in the database.");
                    QCOMPARE(mProgram->CurrentTab(), page);
                    continue;
                }
                const QStringList hit = hits[i].split(QStringLiteral(" | "));
                QCOMPARE(mProgram->CurrentTab(), hit[0]);
                QCOMPARE(SelectedRows(mProgram->Switchboard().GetCurrentLV()), QStringList{hit[1]});
            }
        });
        QCOMPARE(mFixture->Desktop().boxes.size(), hits.count(QString()));
    }

    void modalFromCtrlFWithTheLastText() {
        frmSwitchboard& sb = mProgram->Switchboard();
        mProgram->ClickTab(QStringLiteral("All"));
        gFindWhat = QStringLiteral("Echo");
        const auto open = [&] {
            sb.lvAll->ActiveView()->setFocus();
            QTest::keyClick(sb.lvAll->ActiveView(), Qt::Key_F, Qt::ControlModifier);
        };
        WithModalFind(
            [&](frmFind& find) {
                QCOMPARE(find.Text1->selectedText(), QStringLiteral("Echo"));
                QTest::keyClick(find.Text1, Qt::Key_Return); // Find is the default button
                QCOMPARE(SelectedRows(sb.lvAll), QStringList{"7/1/2026: Echo Followup"});
                QTest::keyClick(find.Text1, Qt::Key_Escape);
            },
            open);
    }

    void modelessFromF7() {
        frmSwitchboard& sb = mProgram->Switchboard();
        gFindWhat = QStringLiteral("remembered");
        sb.lvNew->ActiveView()->setFocus();
        QTest::keyClick(sb.lvNew->ActiveView(), Qt::Key_F7);

        frmFind* find = frmFind::Instance();
        QVERIFY(find && find->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(find->Text1->text(), QStringLiteral("remembered")); // it loaded with it

        // An open bracket is logged, and the dialog goes on working.
        Search(*find, QStringLiteral("[ab"));
        QCOMPARE(StatusText(), QStringLiteral("Ready..."));
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().title, QStringLiteral("Vantry! Vantry! Error"));
        const QString entry = mFixture->LogText();
        QVERIFY2(entry.contains(QStringLiteral("cmdFind_Click")) && entry.contains("93"),
                 qPrintable(entry));
        // The page may change between two searches; each takes the current list anew.
        Search(*find, QStringLiteral("delta"));
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Paid"));
        mProgram->ClickTab(QStringLiteral("Rejected"));
        QTest::mouseClick(find->cmdFind, Qt::LeftButton);
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("All"));
        QTest::mouseClick(find->cmdCancel, Qt::LeftButton);
        QTRY_VERIFY(!frmFind::Instance());
    }

private:
    // Opens Find (modal; by default from the Edit menu), runs `whileOpen` in it, then closes it.
    void WithModalFind(const std::function<void(frmFind&)>& whileOpen,
                       const std::function<void()>& open = {}) {
        bool ran = false;
        QTimer::singleShot(0, this, [&] {
            frmFind* find = frmFind::Instance();
            QVERIFY(find);
            // A failed check inside still closes the dialog, so the test goes on to report it.
            const auto closeAtEnd = qScopeGuard([find] { find->reject(); });
            QCOMPARE(QApplication::activeModalWidget(), find);
            whileOpen(*find);
            ran = !QTest::currentTestFailed();
        });
        if (open)
            open();
        else
            mProgram->Switchboard().mnuFind->trigger();
        QVERIFY(ran);
        QVERIFY(!frmFind::Instance());
    }
    static void Search(frmFind& find, const QString& text) {
        find.Text1->clear();
        QTest::keyClicks(find.Text1, text);
        QTest::mouseClick(find.cmdFind, Qt::LeftButton);
    }

    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<ProgramWindow> mProgram;
};

QTEST_MAIN(tst_find)
#include "tst_find.moc"
