#include "Fixture.h"
#include "ListRows.h"
#include "Modal.h"
#include "RebateRows.h"
#include "app/Notifier.h"
#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "data/Database.h"
#include "maintenance/frmOptions.h"
#include "maintenance/frmPurge.h"

#include <QAction>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

namespace {
RebateRow Deleted(const QString& id, const QString& name) {
    return {.RebateID = id, .RebateName = name, .ProductName = name + " product", .Deleted = true};
}

// Rows of the list as "name|product|date|id|icon".
QStringList Rows(frmPurge& form) {
    QStringList rows;
    ListItemCollection& items = form.lvwRecords->ListItems();
    for (int i = 1; i <= items.Count(); ++i) {
        ListItem* item = items.Item(i);
        rows << QStringList{item->Text(), item->SubItems(1), item->SubItems(2), item->SubItems(3),
                            item->SmallIcon()}
                    .join('|');
    }
    return rows;
}

} // namespace

class tst_purge : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    // The manager's own icon rule: the first that holds wins.
    void listsDeletedRowsWithTheirIcons() {
        RebateRow paid = Deleted("2", "Paid"), rej = Deleted("3", "Rej"), fol = Deleted("4", "Fol"),
                  ove = Deleted("5", "Ove"), uns = Deleted("6", "Uns"), pen = Deleted("7", "");
        paid.AmountReceived = 2.0;
        paid.Rejected = rej.Rejected = true;
        rej.FollowupDate = fol.FollowupDate = QDate(2026, 1, 1);
        fol.DateSent = ove.DateSent = QDate(2026, 1, 2);
        fol.DateDue = QDate(2026, 2, 1);
        ove.DateDue = QDate(2026, 11, 22);
        uns.DateDue = QDate(2026, 11, 23);
        pen.RebateName = std::nullopt;
        pen.ProductName = std::nullopt;
        pen.DateSent = QDate(2026, 11, 1);
        pen.DateDue = QDate(2026, 12, 1);
        mFixture->OpenDatabase(
            {{.RebateID = "1", .RebateName = "Kept"}, paid, rej, fol, ove, uns, pen});
        frmPurge form;
        QCOMPARE(Rows(form),
                 (QStringList{"Paid|Paid product||2|Paid", "Rej|Rej product||3|Rejected",
                              "Fol|Fol product|1/2/2026|4|Followup",
                              "Ove|Ove product|1/2/2026|5|Overdue", "Uns|Uns product||6|Unsent",
                              "||11/1/2026|7|Pending"}));
    }

    void commands_data() {
        QTest::addColumn<bool>("purge");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QStringList>("left");    // still deleted
        QTest::addColumn<QStringList>("present"); // rows of the table
        // Keys as "1 2", "!" first for Invert Selection after them; a "no" answer is the keys
        // left as they were.
        const auto row = [](const char* name, bool purge, bool yes, const char* selected,
                            const char* left, const char* present) {
            const auto keys = [](const char* text) {
                return QString(text).split(' ', Qt::SkipEmptyParts);
            };
            QTest::newRow(name) << purge << int(yes ? vb::vbYes : vb::vbNo) << keys(selected)
                                << keys(left) << keys(present);
        };
        row("recover many", false, true, "1 3", "2", "1 2 3 9");
        row("recover inverted", false, true, "! 2", "2", "1 2 3 9");
        row("purge many", true, true, "1 2", "3", "3 9");
        row("no keeps all", true, false, "1 2 3", "1 2 3", "1 2 3 9");
        row("nothing selected", true, true, "", "1 2 3", "1 2 3 9");
    }
    void commands() {
        QFETCH(bool, purge);
        QFETCH(int, answer);
        QFETCH(QStringList, selected);
        QFETCH(QStringList, left);
        QFETCH(QStringList, present);
        mFixture->OpenDatabase({Deleted("1", "A"),
                                Deleted("2", "B"),
                                Deleted("3", "C"),
                                {.RebateID = "9", .RebateName = "Live"}});
        frmPurge form;
        form.show();
        const bool invert = selected.value(0) == "!";
        SelectIDs(form.lvwRecords, selected.mid(invert));
        if (invert)
            form.mnuInvertSelection_Click();
        QSignalSpy stale(&Notifier::Instance(), &Notifier::ListsStale);
        mFixture->Desktop().SetNextAnswer(answer);
        QTest::mouseClick(purge ? form.cmdPurge : form.cmdRecover, Qt::LeftButton);
        const auto& box = mFixture->Desktop().boxes.first();
        QCOMPARE(box.style, 292);
        QCOMPARE(box.title, purge ? QString("Preparing to Permanently Delete Records")
                                  : QString("Preparing to Recover Deleted Records"));
        QCOMPARE(SortedIDs(form.lvwRecords), left);
        QStringList rows;
        for (const char* id : {"1", "2", "3", "9"})
            if (!ReadRawRebate(id).isEmpty())
                rows << id;
        QCOMPARE(rows, present);
        QCOMPARE(stale.count(), answer == vb::vbYes ? 1 : 0);
        QCOMPARE(form.sbStatus->currentMessage(), QString("Ready..."));
    }

    void rowsGoneBehindTheFormRefresh() {
        mFixture->OpenDatabase({Deleted("1", "A")});
        frmPurge form;
        SelectIDs(form.lvwRecords, {"1"});
        gDatabase->Execute("DELETE FROM Rebates");
        mFixture->Desktop().SetNextAnswer(vb::vbYes);
        form.cmdRecover_Click();
        QCOMPARE(mFixture->Desktop().boxes.size(), 2);
        QCOMPARE(mFixture->Desktop().boxes.at(1).title, QString("No Deleted Records Found"));
        QCOMPARE(form.lvwRecords->ListItems().Count(), 0);
        QVERIFY(!form.cmdRecover->isEnabled());
    }

    // From the Options dialog's button, the real modal manager; Close gives the focus back to
    // the button in the Options dialog.
    void opensModalOverOptions() {
        mFixture->OpenDatabase({Deleted("1", "A")});
        frmOptions options;
        options.show();
        options.tbsTabs->Tabs().Item(2)->SetSelected(true);
        QVERIFY(QTest::qWaitForWindowActive(&options));
        options.cmdRecordMgr->setFocus();
        int rows = -1;
        WhenModal("frmPurge", [&rows](QWidget* dialog) {
            auto* form = static_cast<frmPurge*>(dialog);
            rows = form->lvwRecords->ListItems().Count();
            QTest::keyClick(form, Qt::Key_C, Qt::AltModifier);
        });
        QTest::keyClick(options.cmdRecordMgr, Qt::Key_Space);
        QCOMPARE(rows, 1);
        QTRY_COMPARE(QApplication::activeWindow(), &options);
        QCOMPARE(QApplication::focusWidget(), options.cmdRecordMgr);
    }
};

QTEST_MAIN(tst_purge)
#include "tst_purge.moc"
