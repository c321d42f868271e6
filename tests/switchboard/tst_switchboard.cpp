#include "Fixture.h"
#include "ListRows.h"
#include "RebateRows.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/HelpWindow.h"
#include "common/ui/ListView.h"
#include "common/ui/MdiChild.h"
#include "common/ui/TabStrip.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "switchboard/frmSwitchboard.h"

#include <QAbstractItemView>
#include <QAction>
#include <QFile>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSqlQuery>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

Q_DECLARE_METATYPE(RebateRow)

namespace {
const QDate kToday = Fixture::kToday;

// The Switchboard inside an MDI area, as the main window holds it, after its start-up timer.
struct Board {
    Board() {
        form = &frmSwitchboard::Load();
        window = area.addSubWindow(form);
        area.resize(1000, 760);
        area.show();
        form->show();
        QTRY_VERIFY(!form->Timer1->isActive());
    }
    ~Board() { delete window; }
    void SelectTab(const QString& caption) {
        form->tbsSwitch->Tabs().Item(caption)->SetSelected(true);
    }
    QAction* Action(const char* name) { return form->findChild<QAction*>(name); }
    ToolbarButton& Button(const char* key) { return form->xToolbar->Buttons(QString(key)); }
    QString Tab() { return form->tbsSwitch->SelectedItem()->Caption(); }

    QMdiArea area;
    frmSwitchboard* form;
    QMdiSubWindow* window;
};

// "text | product | column 3 | id" for each row of a list, in the displayed order.
QStringList Rows(ListView* lv) {
    QStringList rows;
    for (int i = 1; i <= lv->ListItems().Count(); ++i) {
        const ListItem* item = lv->ListItems().Item(i);
        rows << QStringList{item->Text(), item->SubItems(1), item->SubItems(2), item->SubItems(3)}
                    .join(" | ");
    }
    return rows;
}

bool IsDeleted(const QString& id) {
    return ReadRawRebate(id).value("Deleted").toInt() == 1;
}

// A rebate form as the Switchboard sees it: loaded, maybe with unsaved changes, showing a key.
class FakeRebateForm : public QWidget, public RecordForm {
public:
    FakeRebateForm(bool isChanged, const QString& id) : changed(isChanged), rebateID(id) {
        setObjectName("frmRebate");
        Forms::Register(this);
    }
    bool changed;
    QString rebateID;
    int raised = 0;
    bool unloaded = false;
    bool RecordChanged() const override { return changed; }
    QString RebateID() const override { return rebateID; }
    void Unload() override { unloaded = true; }
    void ZOrder() override { ++raised; }
};
} // namespace

class tst_switchboard : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void recordGoesToItsList_data() {
        QTest::addColumn<RebateRow>("row");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("expected");
        // One record "Beta", product "Lamp", key "1": its list, its date text and third column.
        const auto row = [](const char* name, RebateRow r, const char* list, const char* date,
                            const char* third) {
            r.RebateID = "1", r.RebateName = "Beta", r.ProductName = "Lamp";
            QTest::newRow(name) << r << QString(list)
                                << (*list ? QString("%1: Beta | Lamp | %2 | 1").arg(date, third)
                                          : QString());
        };
        const QDate sent(2026, 11, 1);
        row("unsent, no dates", {}, "lvUnsent", "No date", "No Date");
        row("pending: Date Sent", {.DateSent = sent, .DateDue = kToday}, "lvPending", "11/1/2026",
            "2026-11-01");
        row("overdue: Date Due", {.DateSent = sent, .DateDue = kToday.addDays(-1)}, "lvOverdue",
            "11/1/2026", "2026-11-22");
        row("never mailed and late", {.DateDue = QDate(2026, 11, 20)}, "lvOverdue", "No date",
            "2026-11-20");
        row("paid: Date Received",
            {.DateSent = sent, .AmountReceived = 5.0, .DateReceived = QDate(2026, 11, 10)},
            "lvPaid", "11/1/2026", "2026-11-10");
        row("paid without a date", {.DateSent = sent, .AmountReceived = 2.0}, "lvPaid", "11/1/2026",
            "No Date");
        row("followup: Followup Date", {.DateSent = sent, .FollowupDate = QDate(2026, 11, 15)},
            "lvFollowup", "11/1/2026", "2026-11-15");
        row("rejected: Date Sent", {.DateSent = QDate(2026, 10, 1), .Rejected = true}, "lvRejected",
            "10/1/2026", "2026-10-01");
        row("deleted is in no list", {.Deleted = true}, "", "", "");
        row("Deleted Null is not loaded", {.Deleted = std::nullopt}, "", "", "");
    }

    void recordGoesToItsList() {
        QFETCH(RebateRow, row);
        QFETCH(QString, list);
        QFETCH(QString, expected);
        Fixture fixture;
        fixture.OpenDatabase({row});
        Board board;
        for (const char* name :
             {"lvUnsent", "lvPending", "lvOverdue", "lvPaid", "lvFollowup", "lvRejected"}) {
            auto* lv = board.form->findChild<ListView*>(name);
            QCOMPARE(Rows(lv), list == name ? QStringList{expected} : QStringList{});
        }
        QCOMPARE(Rows(board.form->lvAll), list.isEmpty() ? QStringList{} : QStringList{expected});
    }

    void emptyDatabase() {
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        QCOMPARE(board.Tab(), QString("New"));
        QCOMPARE(board.form->tbsSwitch->Bar()->tabToolTip(5),
                 QString("View rebates for which you have generated a follow up letter"));
        QCOMPARE(Rows(board.form->lvNew),
                 QStringList{"Create a New Rebate | Creates a new rebate record. |  | "});
        for (const char* caption :
             {"Unsent", "Pending", "Overdue", "Paid", "Active Followups", "Rejected", "All"}) {
            board.SelectTab(caption);
            QCOMPARE(board.form->GetCurrentLV()->ListItems().Count(), 0);
            QVERIFY(board.form->picLVBack(board.form->tbsSwitch->SelectedItem()->Index() - 1)
                        ->isVisible());
        }
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void updateIconsFollowsTheRecord_data() {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("expectedTab");
        for (const char* shown : {"Pending", "New"})
            QTest::newRow(shown) << QString(shown) << "Paid";
        QTest::newRow("All stays on All") << QString("All") << QString("All");
    }

    void updateIconsFollowsTheRecord() {
        QFETCH(QString, shown);
        QFETCH(QString, expectedTab);
        Fixture fixture;
        fixture.OpenDatabase({RebateRow{.RebateID = "20261101000000",
                                        .RebateName = "Moved",
                                        .DateSent = QDate(2026, 11, 1)},
                              RebateRow{.RebateID = "20261101000001",
                                        .RebateName = "Stays",
                                        .DateSent = QDate(2026, 11, 2)}});
        Board board;
        board.SelectTab(shown);
        QSqlQuery(gDatabase->Connection())
            .exec("UPDATE Rebates SET AmountReceived = 50000 WHERE RebateID = '20261101000000'");
        board.form->UpdateIcons("20261101000000");

        QCOMPARE(board.Tab(), expectedTab);
        QCOMPARE(Rows(board.form->lvPending).size(), 1);
        QCOMPARE(board.form->lvPaid->ListItems().Count(), 1);
        QCOMPARE(ListedIDs(board.form->GetCurrentLV(), true), QStringList{"20261101000000"});
        QCOMPARE(board.form->lvAll->ListItems().Count(), 2);
    }

    void columnClickSorts() {
        Fixture fixture;
        fixture.OpenDatabase({RebateRow{.RebateID = "1",
                                        .RebateName = "b",
                                        .ProductName = "y",
                                        .DateSent = QDate(2026, 3, 1)},
                              RebateRow{.RebateID = "2", .RebateName = "a", .ProductName = "z"},
                              RebateRow{.RebateID = "3",
                                        .RebateName = "c",
                                        .ProductName = "x",
                                        .DateSent = QDate(2026, 1, 1)}});
        Board board;
        board.SelectTab("All");
        board.Action("mnuDetails")->trigger();
        auto* header = board.form->lvAll->findChild<QTreeView*>()->header();
        const auto click = [&](int section) {
            QTest::mouseClick(
                header->viewport(), Qt::LeftButton, {},
                QPoint(header->sectionViewportPosition(section) + 5, header->height() / 2));
        };
        const auto ids = [&] {
            return ListedIDs(board.form->lvAll);
        };
        QCOMPARE(ids(),
                 (QStringList{"3", "1", "2"})); // by the text: "1/1/2026", "3/1/2026", "No date"
        click(1);
        QCOMPARE(ids(), (QStringList{"3", "1", "2"})); // product ascending
        click(1);
        QCOMPARE(ids(), (QStringList{"2", "1", "3"})); // the same column again: descending
        click(2);
        QCOMPARE(ids(), (QStringList{"3", "1", "2"})); // another column starts ascending
        board.Action("mnuSortDescending")->trigger();
        QCOMPARE(ids(), (QStringList{"2", "1", "3"})); // "No Date" sorts after the dates
    }

    void sizeListColumns_data() {
        QTest::addColumn<QString>("tab");
        QTest::newRow("lvNew") << "New";
        QTest::newRow("lvAll") << "All";
    }

    void sizeListColumns() {
        QFETCH(QString, tab);
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        board.SelectTab(tab);
        QTest::mouseClick(board.Button("Details").Widget(), Qt::LeftButton);
        ListView* lv = board.form->GetCurrentLV();
        QCOMPARE(lv->View(), 3);
        const int width = lv->WidthTwips();
        QCOMPARE(lv->ColumnHeaders().Item(1)->WidthTwips(), qRound(width * 0.5));
        if (tab == "New") {
            QCOMPARE(lv->ColumnHeaders().Item(2)->WidthTwips(),
                     width - (qRound(width * 0.5) + 350));
        } else {
            QCOMPARE(lv->ColumnHeaders().Item(2)->WidthTwips(), qRound(width * 0.3));
            QCOMPARE(lv->ColumnHeaders().Item(3)->WidthTwips(),
                     width - (qRound(width * 0.5) + qRound(width * 0.3) + 350));
            QCOMPARE(lv->ColumnHeaders().Item(4)->WidthTwips(), 0);
        }
        // A wider window refits the columns.
        board.window->resize(board.window->width() + 150, board.window->height());
        QTRY_COMPARE(lv->ColumnHeaders().Item(1)->WidthTwips(), qRound(lv->WidthTwips() * 0.5));
    }

    void viewsSavedAndRestored_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("view");
        const auto row = [](const char* name, const char* how, const char* command, int view) {
            QTest::newRow(name) << QString(how) << QString(command) << view;
        };
        row("menu: small icons", "menu", "mnuSmallIcons", 1);
        row("menu: details", "menu", "mnuDetails", 3);
        row("popup: details", "menu", "mnuPopupDetails", 3);
        row("toolbar: list", "toolbar", "List", 2);
    }

    void viewsSavedAndRestored() {
        QFETCH(QString, how);
        QFETCH(QString, command);
        QFETCH(int, view);
        Fixture fixture;
        fixture.OpenDatabase();
        SaveSetting(kAppTitle, "Settings", "Paid", "1"); // start Paid in small icons
        {
            Board board;
            board.SelectTab("Paid");
            QCOMPARE(board.form->lvPaid->View(), 1);
            if (how == "menu") {
                board.Action(qPrintable(command))->trigger();
            } else { // a second click leaves the button down
                QTest::mouseClick(board.form->xToolbar->Buttons(command).Widget(), Qt::LeftButton);
                QTest::mouseClick(board.form->xToolbar->Buttons(command).Widget(), Qt::LeftButton);
            }
            QCOMPARE(board.form->lvPaid->View(), view);
            const char* menus[] = {"mnuLargeIcons", "mnuSmallIcons", "mnuList", "mnuDetails"};
            const char* popups[] = {"mnuPopupLargeIcons", "mnuPopupSmallIcons", "mnuPopupList",
                                    "mnuPopupDetails"};
            const char* buttons[] = {"Large", "Small", "List", "Details"};
            for (int i = 0; i < 4; ++i) {
                QCOMPARE(board.Action(menus[i])->isChecked(), i == view);
                QCOMPARE(board.Action(popups[i])->isChecked(), i == view);
                QCOMPARE(board.Button(buttons[i]).Value(), i == view ? 1 : 0);
            }
            board.SelectTab("All"); // another list keeps its own view
            QCOMPARE(board.form->lvAll->View(), 0);
            QCOMPARE(board.Button("Large").Value(), 1);
            fixture.Desktop().SetNextAnswer(vb::vbYes);
            QVERIFY(board.window->close());
        }
        QCOMPARE(GetSetting(kAppTitle, "Settings", "Paid"), QString::number(view));
        QCOMPARE(GetSetting(kAppTitle, "Settings", "All"), QString("0"));
        Board again;
        QCOMPARE(again.form->lvPaid->View(), view);
    }

    void commandsByTab_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<bool>("listMenus");   // refresh, select all, views, sort
        QTest::addColumn<bool>("records");     // delete, edit, print selected
        QTest::addColumn<bool>("viewButtons"); // Large ... Find
        QTest::addColumn<bool>("deleteButton");
        QTest::newRow("New") << "New" << true << false << true << false;
        QTest::newRow("a list with rows") << "Unsent" << true << true << true << true;
        QTest::newRow("an empty list") << "Pending" << true << false << true << false;
        QTest::newRow("Statistics") << "Statistics" << false << false << false << false;
    }

    void commandsByTab() {
        QFETCH(QString, tab);
        QFETCH(bool, listMenus);
        QFETCH(bool, records);
        QFETCH(bool, viewButtons);
        QFETCH(bool, deleteButton);
        Fixture fixture;
        fixture.OpenDatabase({RebateRow{.RebateID = "1", .RebateName = "Only"}});
        Board board;
        board.SelectTab("All"); // from a tab with everything on
        QTest::mouseClick(board.form->tbsSwitch->Bar(), Qt::LeftButton, {},
                          board.form->tbsSwitch->Bar()
                              ->tabRect(board.form->tbsSwitch->Tabs().Item(tab)->Index() - 1)
                              .center());
        QCOMPARE(board.Tab(), tab);
        for (const char* name :
             {"mnuRefresh", "mnuSelectAll", "mnuInvertSelection", "mnuLargeIcons", "mnuDetails",
              "mnuSortAscending", "mnuArrangeAll"})
            QVERIFY2(board.Action(name)->isEnabled() == listMenus, name);
        for (const char* name :
             {"mnuDeleteRebate", "mnuEditRebate", "mnuPrintSelected", "mnuPrintPreview"})
            QVERIFY2(board.Action(name)->isEnabled() == records, name);
        if (tab != "Statistics") { // the popup can't open there; its entries keep their state
            QCOMPARE(board.form->mnuPopupDelete->isEnabled(), records);
            QCOMPARE(board.form->mnuPopupPrint->isEnabled(), records);
        }
        for (const char* key :
             {"New", "Large", "Small", "List", "Details", "AZ", "ZA", "Find", "Arrange All"})
            QVERIFY2(board.Button(key).Enabled() == viewButtons, key);
        QCOMPARE(board.Button("Delete").Enabled(), deleteButton);

        // F5 reloads on a list page and does nothing on the Statistics page.
        QSqlQuery(gDatabase->Connection()).exec("DELETE FROM Rebates");
        board.form->setFocus();
        QTest::keyClick(board.form, Qt::Key_F5);
        QCOMPARE(board.form->lvAll->ListItems().Count(), listMenus ? 0 : 1);
    }

    void deleteRecords_data() {
        QTest::addColumn<int>("selected");
        QTest::addColumn<int>("answer");
        for (int selected : {1, 2}) {
            QTest::addRow("%d, Yes", selected) << selected << int(vb::vbYes);
            QTest::addRow("%d, No", selected) << selected << int(vb::vbNo);
        }
    }

    void deleteRecords() {
        QFETCH(int, selected);
        QFETCH(int, answer);
        const QString s = selected == 2 ? "s" : "";
        Fixture fixture;
        fixture.OpenDatabase(PlainRebates(3));
        Board board;
        board.SelectTab("All");
        ListView* lv = board.form->lvAll;
        lv->ListItems().Item(1)->SetSelected(selected >= 1);
        lv->ListItems().Item(2)->SetSelected(selected >= 2);
        fixture.Desktop().SetNextAnswer(answer);
        lv->ActiveView()->setFocus();
        QTest::keyClick(lv->ActiveView(), Qt::Key_Delete);

        QCOMPARE(fixture.Desktop().Shown(),
                 QStringList{"Delete Rebate" + s +
                             "? | 292 | Are you sure you want to delete the "
                             "selected rebate" +
                             s + "?"});
        const bool yes = answer == vb::vbYes;
        QCOMPARE(IsDeleted("1"), yes);
        QCOMPARE(IsDeleted("2"), yes && selected == 2);
        QCOMPARE(IsDeleted("3"), false);
        const int left = yes ? 3 - selected : 3;
        QCOMPARE(lv->ListItems().Count(), left);
        QCOMPARE(board.form->lvUnsent->ListItems().Count(), left);
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void deleteManyRefused_data() {
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<QStringList>("deleted");
        // The walk goes in the list's order: 1, 2, 3.
        QTest::newRow("the second record refused: the first goes") << "record" << QStringList{"1"};
        QTest::newRow("another program writing: none goes") << "writer" << QStringList{};
        QTest::newRow("the commit refused: none goes") << "commit" << QStringList{};
    }

    void deleteManyRefused() {
        QFETCH(QString, refusal);
        QFETCH(QStringList, deleted);
        Fixture fixture;
        fixture.OpenDatabase(PlainRebates(3));
        gDatabase->SetBusyTimeout(0);
        QSqlQuery sql(gDatabase->Connection());
        std::unique_ptr<Database> other;
        if (refusal == "record") {
            QVERIFY(
                sql.exec("CREATE TRIGGER refuse BEFORE UPDATE ON Rebates WHEN NEW.RebateID = '2' "
                         "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
        } else if (refusal == "writer") {
            other = Database::Open(fixture.DatabasePath());
            QVERIFY(QSqlQuery(other->Connection()).exec("BEGIN IMMEDIATE"));
        } else {
            // A rule checked only at the commit, broken by the last record's write.
            QVERIFY(sql.exec("PRAGMA foreign_keys = ON"));
            QVERIFY(sql.exec("CREATE TABLE Notes (RebateID TEXT REFERENCES Rebates (RebateID) "
                             "DEFERRABLE INITIALLY DEFERRED)"));
            QVERIFY(sql.exec("CREATE TRIGGER note AFTER UPDATE ON Rebates WHEN NEW.RebateID = '3' "
                             "BEGIN INSERT INTO Notes VALUES ('none such'); END"));
        }
        Board board;
        board.SelectTab("All");
        board.Action("mnuSelectAll")->trigger();
        fixture.Desktop().SetNextAnswer(vb::vbYes);
        board.form->DeleteRebateRecord();
        other.reset();

        QCOMPARE(fixture.Desktop().boxes.size(), 2);
        QCOMPARE(fixture.Desktop().boxes[1].title, QString("Vantry! Vantry! Error"));
        QVERIFY(fixture.LogText().contains("Error Location:\t\tDeleteRebateRecord()"));
        QStringList stillListed;
        for (const QString id : {"1", "2", "3"}) {
            QCOMPARE(IsDeleted(id), deleted.contains(id));
            if (!deleted.contains(id))
                stillListed << id;
        }
        // The lists show what the store holds.
        QStringList listed = ListedIDs(board.form->lvAll);
        listed.sort();
        QCOMPARE(listed, stillListed);
        QCOMPARE(board.form->lvUnsent->ListItems().Count(), stillListed.size());
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void deleteWithRebateFormOpen() {
        Fixture fixture;
        fixture.OpenDatabase(PlainRebates(2));
        Board board;
        board.SelectTab("Unsent");
        board.form->lvUnsent->ListItems().Item(1)->SetSelected(true);
        board.form->lvUnsent->ListItems().Item(2)->SetSelected(true);
        {
            FakeRebateForm unsaved(true, "2");
            board.form->DeleteRebateRecord();
            QCOMPARE(
                fixture.Desktop().Shown(),
                QStringList{"Unsaved Rebate | 48 | Please save the current rebate record before "
                            "attempting to delete other records."});
            QCOMPARE(unsaved.raised, 1);
            QVERIFY(!IsDeleted("1") && !IsDeleted("2"));
        }
        FakeRebateForm clean(false, "2");
        fixture.Desktop().SetNextAnswer(vb::vbYes);
        board.form->DeleteRebateRecord();
        QVERIFY(clean.unloaded); // closed without a word: only the question was asked
        QCOMPARE(fixture.Desktop().boxes.size(), 2);
        QVERIFY(IsDeleted("1") && IsDeleted("2"));
        QCOMPARE(board.form->lvAll->ListItems().Count(), 0);
    }

    void invertSelection_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<QList<int>>("selected");
        QTest::addColumn<QList<int>>("expected");
        QTest::newRow("one row stays as it was") << 1 << QList<int>{} << QList<int>{};
        QTest::newRow("some rows flip") << 3 << QList<int>{1} << QList<int>{2, 3};
        QTest::newRow("all selected: the first visible stays")
            << 3 << QList<int>{1, 2, 3} << QList<int>{1};
    }

    void invertSelection() {
        QFETCH(int, rows);
        QFETCH(QList<int>, selected);
        QFETCH(QList<int>, expected);
        Fixture fixture;
        fixture.OpenDatabase(PlainRebates(rows));
        Board board;
        board.SelectTab("Unsent");
        ListView* lv = board.form->lvUnsent;
        for (int i = 1; i <= rows; ++i)
            lv->ListItems().Item(i)->SetSelected(selected.contains(i));
        board.Action("mnuInvertSelection")->trigger();
        QList<int> now;
        for (int i = 1; i <= rows; ++i)
            if (lv->ListItems().Item(i)->Selected())
                now << i;
        QCOMPARE(now, expected);
    }

    void exitQuestion_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("Yes") << int(vb::vbYes);
        QTest::newRow("No") << int(vb::vbNo);
    }

    void exitQuestion() {
        QFETCH(int, answer);
        Fixture fixture;
        fixture.OpenDatabase();
        for (const char* name : {"~va1.rtf", "~va2.rtf", "~vb.rtf"}) {
            QFile file(TempPath() + "/" + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        Board board;
        fixture.Desktop().SetNextAnswer(answer);
        const bool closed = board.window->close();
        QCOMPARE(fixture.Desktop().Shown(),
                 QStringList{"Exiting Vantry! Vantry! | 36 | Do you really want to exit the "
                             "application?"});
        QCOMPARE(closed, answer == vb::vbYes);
        QCOMPARE(FileExists(TempPath() + "/~va1.rtf"), answer == vb::vbNo);
        QCOMPARE(FileExists(TempPath() + "/~va2.rtf"), answer == vb::vbNo);
        QVERIFY(FileExists(TempPath() + "/~vb.rtf"));
        QFile::remove(TempPath() + "/~vb.rtf");
        while (KillFile(TempPath() + "/~va*.rtf")) {
        }
        if (answer == vb::vbYes) {
            QTRY_COMPARE(frmSwitchboard::Instance(), nullptr);
            board.window = nullptr;
        }
    }

    void letterKeySearch() {
        Fixture fixture;
        fixture.OpenDatabase(
            {RebateRow{.RebateID = "1", .RebateName = "Nails"},
             RebateRow{.RebateID = "2", .RebateName = "Tape", .DateSent = QDate(2026, 5, 1)},
             RebateRow{.RebateID = "3", .RebateName = "Glue"}});
        Board board;
        board.SelectTab("All");
        QWidget* view = board.form->lvAll->ActiveView();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_N); // the rows read "No date: ...": the search sees that text
        QCOMPARE(ListedIDs(board.form->lvAll, true), QStringList{"3"});
        QTest::keyClick(view, Qt::Key_N);
        QCOMPARE(ListedIDs(board.form->lvAll, true), QStringList{"1"});
        QTest::keyClick(view, Qt::Key_N); // round again
        QCOMPARE(ListedIDs(board.form->lvAll, true), QStringList{"3"});
        QTest::keyClick(view, Qt::Key_N);
        QTest::keyClick(view, Qt::Key_5);
        QCOMPARE(ListedIDs(board.form->lvAll, true), QStringList{"2"});
        QTest::keyClick(view, Qt::Key_T); // no row starts with "T"
        QCOMPARE(ListedIDs(board.form->lvAll, true), QStringList{"2"});
    }

    void missingTableIsLogged() {
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        gDatabase->Execute("DROP TABLE Rebates");
        board.form->mnuRefresh_Click();
        QCOMPARE(fixture.Desktop().boxes.size(), 1);
        QCOMPARE(fixture.Desktop().boxes[0].title, QString("Vantry! Vantry! Error"));
        const QString text = fixture.LogText();
        QVERIFY2(text.contains("AddAllListItems()"), qPrintable(text));
        QVERIFY(text.contains("frmSwitchboard"));
        QCOMPARE(StatusText(), QString("Ready..."));
        QVERIFY(CurrentMousePointer() == MousePointer::Default);
        board.SelectTab("All"); // still working
        QCOMPARE(board.form->lvAll->ListItems().Count(), 0);
    }

    void windowPositionSaved() {
        Fixture fixture;
        fixture.OpenDatabase();
        {
            Board board;
            // A first run: centred as for 6500 x 6500 twips, then widened to the minimum.
            QCOMPARE(board.window->width(), 8000 / 15);
            QCOMPARE(board.window->x(),
                     qRound((board.area.viewport()->width() * 15 - 6500) / 2.0) / 15);
            board.window->setGeometry(20, 30, 300, 200); // smaller than the minimum
            QCOMPARE(board.window->size(), QSize(8000 / 15, 5000 / 15));
            board.window->setGeometry(20, 30, 700, 500);
            fixture.Desktop().SetNextAnswer(vb::vbYes);
            QVERIFY(board.window->close());
        }
        QCOMPARE(GetSetting(kAppTitle, "Settings", "SwitchboardLeft"), QString("300"));
        QCOMPARE(GetSetting(kAppTitle, "Settings", "SwitchboardWidth"), QString("10500"));
        Board again;
        QCOMPARE(again.window->geometry(), QRect(20, 30, 700, 500));
    }

    void unreachablePositionReplaced_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const auto row = [](const char* name, const char* key, const char* value) {
            QTest::newRow(name) << QString(key) << QString(value);
        };
        row("far left", "SwitchboardLeft", "-300000");
        row("below the bottom", "SwitchboardTop", "400000");
        row("NaN", "SwitchboardLeft", "nan");
        row("infinite", "SwitchboardTop", "inf");
        row("huge", "SwitchboardLeft", "1e300");
        row("wider than any screen", "SwitchboardWidth", "1400000");
    }

    // A window the settings would put where it can't be seen or reached opens where a first
    // run puts it, and that is what is written back.
    void unreachablePositionReplaced() {
        QFETCH(QString, key);
        QFETCH(QString, value);
        Fixture fixture;
        fixture.OpenDatabase();
        QRect first;
        {
            Board board;
            first = board.window->geometry();
        }
        for (const char* name :
             {"SwitchboardLeft", "SwitchboardTop", "SwitchboardWidth", "SwitchboardHeight"})
            SaveSetting(kAppTitle, "Settings", name, "1500");
        SaveSetting(kAppTitle, "Settings", key, value);
        const auto part = [&key](const QRect& r) {
            return key.endsWith("Left") ? r.x() : key.endsWith("Top") ? r.y() : r.width();
        };
        Board board;
        QCOMPARE(part(board.window->geometry()), part(first));
        fixture.Desktop().SetNextAnswer(vb::vbYes);
        QVERIFY(board.window->close());
        QCOMPARE(GetSetting(kAppTitle, "Settings", key).toDouble(), part(first) * 15.0);
    }

    void ctrlTabCycles() {
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        board.SelectTab("Rejected");
        QWidget* focus = board.form->lvRejected->ActiveView();
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(board.Tab(), QString("All"));
        QTest::keyClick(board.form->lvAll->ActiveView(), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(board.Tab(), QString("Statistics"));
        board.form->tbsSwitch->setFocus();
        QTest::keyClick(board.form->tbsSwitch, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(board.Tab(), QString("Savings"));
        QTest::keyClick(board.form->tbsSwitch, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(board.Tab(), QString("New")); // from the last tab back to the first
    }

    void windowMenuListsTheChildren() {
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        QMdiSubWindow* other = board.area.addSubWindow(new QWidget);
        other->setWindowTitle("Other");
        other->show();
        board.area.setActiveSubWindow(other);
        QMenu* menu = board.form->mnuWindow;
        menu->popup(QPoint(0, 0));
        QTRY_VERIFY(menu->isVisible());
        QStringList entries;
        QAction* switchboard = nullptr;
        for (QAction* entry : menu->actions()) {
            if (entry->isSeparator())
                continue;
            entries << entry->text() + (entry->isChecked() ? " (active)" : "");
            if (!switchboard)
                switchboard = entry;
        }
        menu->close();
        QCOMPARE(entries, (QStringList{"&1 Switchboard", "&2 Other (active)"}));
        switchboard->trigger();
        QCOMPARE(board.area.currentSubWindow(), board.window);
    }

    void popupWithTwoSelected() {
        Fixture fixture;
        fixture.OpenDatabase(PlainRebates(2));
        Board board;
        board.SelectTab("Unsent");
        board.Action("mnuDetails")->trigger();
        ListView* lv = board.form->lvUnsent;
        auto* tree = qobject_cast<QTreeView*>(lv->ActiveView());
        const QPoint second = tree->visualRect(tree->model()->index(1, 0)).center();
        for (int selected : {1, 2}) {
            lv->ListItems().Item(1)->SetSelected(true);
            lv->ListItems().Item(2)->SetSelected(selected == 2);
            QTest::mouseClick(tree->viewport(), Qt::RightButton, {},
                              selected == 2 ? second : QPoint(5, 5));
            QTRY_VERIFY(board.form->mnuPopup->isVisible());
            QCOMPARE(board.form->mnuPopupOpen->isEnabled(), selected < 2);
            QVERIFY(board.form->mnuPopupDelete->isEnabled()); // the others keep their state
            board.form->mnuPopup->hide();
        }
    }

    void f1OnAListOpensItsTopic_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<int>("topic");
        QTest::newRow("New") << "New" << 1079;
        QTest::newRow("Overdue") << "Overdue" << 1081;
        QTest::newRow("All") << "All" << 1080;
    }

    void f1OnAListOpensItsTopic() {
        QFETCH(QString, tab);
        QFETCH(int, topic);
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1", .RebateName = "Router"}});
        Board board;
        App::SetHelpFile(fixture.ProgramDir() + "vantry.hlp");
        Help::InstallF1Handler();
        board.SelectTab(tab);
        ListView* list = board.form->findChild<ListView*>("lv" + tab);
        QVERIFY(list);
        QWidget* view = list->findChild<QAbstractItemView*>("details");
        if (!view->isVisible())
            view = list->findChild<QAbstractItemView*>("icons");
        view->setFocus();
        QTRY_VERIFY(view->hasFocus());
        QTest::keyClick(view, Qt::Key_F1);
        QVERIFY(Help::Window());
        QCOMPARE(Help::Window()->CurrentTopic(), topic);
        Help::Quit();
        App::SetHelpFile(QString());
    }

    void helpWithoutHelpFile_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("introduction") << "mnuIntro";
        QTest::newRow("contents") << "mnuContents";
        QTest::newRow("search") << "mnuSearchForHelpOn";
    }

    void helpWithoutHelpFile() {
        QFETCH(QString, command);
        Fixture fixture;
        fixture.OpenDatabase();
        Board board;
        App::SetHelpFile(QString());
        board.Action(qPrintable(command))->trigger();
        QCOMPARE(fixture.Desktop().Shown(),
                 QStringList{"Switchboard | 64 | Unable to display Help Contents. There is no Help "
                             "associated with this project."});
        QCOMPARE(StatusText(), QString("Ready..."));
    }
};

QTEST_MAIN(tst_switchboard)
#include "tst_switchboard.moc"
