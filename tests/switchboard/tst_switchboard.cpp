#include "Fixture.h"
#include "ListRows.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "app/Notifier.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "maintenance/frmOptions.h"
#include "rebateform/frmRebate.h"
#include "switchboard/DeadlinePanel.h"
#include "switchboard/frmSwitchboard.h"

#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTabBar>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

Q_DECLARE_METATYPE(RebateRow)

namespace {
const QDate kToday = Fixture::kToday;

// The Switchboard inside an MDI area, as the main window holds it, after its start-up timer.
struct Board {
    explicit Board(const char* tab = nullptr) {
        form = &frmSwitchboard::Load();
        window = area.addSubWindow(form);
        area.resize(1000, 760);
        area.show();
        form->show();
        QTRY_VERIFY(!form->Timer1->isActive());
        if (tab)
            form->tbsSwitch->Tabs().Item(tab)->SetSelected(true);
    }
    ~Board() { delete window; }
    QAction* Action(const char* name) { return form->findChild<QAction*>(name); }
    ToolbarButton& Button(const char* key) { return form->xToolbar->Buttons(QString(key)); }
    QString Tab() { return form->tbsSwitch->SelectedItem()->Caption(); }

    QMdiArea area;
    frmSwitchboard* form;
    QMdiSubWindow* window;
};

struct OpenFixture : Fixture {
    explicit OpenFixture(const QList<RebateRow>& rows = {}) { OpenDatabase(rows); }
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
struct FakeRebateForm : QWidget, RecordForm {
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

class tst_switchboard : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void recordGoesToItsList_data() {
        QTest::addColumn<RebateRow>("row");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("alarm"); // the stored option; true: never stored
        // One record "Beta", product "Lamp", key "1": its list, its date text and third column.
        const auto row = [](const char* name, RebateRow r, const char* list, const char* date,
                            const char* third, bool alarm = true) {
            r.RebateID = "1", r.RebateName = "Beta", r.ProductName = "Lamp";
            QTest::newRow(name) << r << QString(list)
                                << (*list ? QString("%1: Beta | Lamp | %2 | 1").arg(date, third)
                                          : QString())
                                << alarm;
        };
        const QDate sent(2026, 11, 1);
        row("unsent, no dates", {}, "lvUnsent", "No date", "No Date");
        row("pending: Date Sent", {.DateSent = sent, .DateDue = kToday}, "lvPending", "11/1/2026",
            "2026-11-01");
        row("overdue: Date Due", {.DateSent = sent, .DateDue = kToday.addDays(-1)}, "lvOverdue",
            "11/1/2026", "2026-11-22");
        row("overdue, the alarm off", {.DateSent = sent, .DateDue = kToday.addDays(-1)},
            "lvOverdue", "11/1/2026", "2026-11-22", false);
        row("never mailed and late", {.DateDue = QDate(2026, 11, 20)}, "lvOverdue", "No date",
            "2026-11-20");
        row("paid: Date Received",
            {.DateSent = sent, .AmountReceived = 5.0, .DateReceived = QDate(2026, 11, 10)},
            "lvPaid", "11/1/2026", "2026-11-10");
        row("followup: Followup Date", {.DateSent = sent, .FollowupDate = QDate(2026, 11, 15)},
            "lvFollowup", "11/1/2026", "2026-11-15");
        row("rejected: Date Sent", {.DateSent = QDate(2026, 10, 1), .Rejected = true}, "lvRejected",
            "10/1/2026", "2026-10-01");
        row("deleted is in no list", {.Deleted = true}, "", "", "");
    }

    void recordGoesToItsList() {
        QFETCH(RebateRow, row);
        QFETCH(QString, list);
        QFETCH(QString, expected);
        QFETCH(bool, alarm);
        OpenFixture fixture({row});
        if (!alarm)
            SaveSetting(kAppTitle, "Options", "chkAlarm", "0");
        Board board;
        // An overdue rebate opens the Overdue page, unless the alarm is off; a rebate due today
        // isn't overdue.
        QCOMPARE(board.Tab(), QString(list == "lvOverdue" && alarm ? "Overdue" : "New"));
        QVERIFY(fixture.Desktop().boxes.isEmpty());
        for (ListView* lv : board.form->RecordLists()) {
            const bool in = lv->Name() == list || (lv->Name() == "lvAll" && !list.isEmpty());
            QCOMPARE(Rows(lv), in ? QStringList{expected} : QStringList{});
        }
        QCOMPARE(Rows(board.form->lvNew),
                 QStringList{"Create a New Rebate | Creates a new rebate record. |  | "});
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void sortInvertAndCtrlTab() {
        const auto row = [](const char* id, const char* name, const char* product,
                            std::optional<QDate> sent) {
            return RebateRow{
                .RebateID = id, .RebateName = name, .ProductName = product, .DateSent = sent};
        };
        OpenFixture fixture({row("1", "b", "y", QDate(2026, 3, 1)), row("2", "a", "z", {}),
                             row("3", "c", "x", QDate(2026, 1, 1))});
        Board board("All");
        board.Action("mnuDetails")->trigger();
        auto* header = board.form->lvAll->findChild<QTreeView*>()->header();
        // The rows read "1/1/2026", "3/1/2026", "No date"; then a click on the product, the
        // product again (descending), another column (ascending), Sort Descending.
        const QStringList up{"3", "1", "2"}, down{"2", "1", "3"};
        QCOMPARE(ListedIDs(board.form->lvAll), up);
        for (const auto& [section, ids] : {std::pair{1, up}, {1, down}, {2, up}, {-1, down}}) {
            if (section < 0)
                board.Action("mnuSortDescending")->trigger();
            else
                QTest::mouseClick(
                    header->viewport(), Qt::LeftButton, {},
                    QPoint(header->sectionViewportPosition(section) + 5, header->height() / 2));
            QCOMPARE(ListedIDs(board.form->lvAll), ids);
        }
        SelectIDs(board.form->lvAll, {"1"});
        board.Action("mnuInvertSelection")->trigger();
        QCOMPARE(ListedIDs(board.form->lvAll, true), (QStringList{"2", "3"}));
        // Ctrl+Tab from a list and from the tab strip, and from the last tab back to the first.
        for (const char* next : {"Statistics", "Savings", "New"}) {
            ListView* lv = board.form->GetCurrentLV();
            QWidget* focus = lv ? lv->ActiveView() : board.form->tbsSwitch;
            focus->setFocus();
            QTest::keyClick(focus, Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(board.Tab(), QString(next));
        }
    }

    void commandsByTab_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<bool>("list");    // refresh, select all, views, sort; Large ... Find
        QTest::addColumn<bool>("records"); // delete, edit, print selected
        QTest::newRow("New") << "New" << true << false;
        QTest::newRow("a list with rows") << "Unsent" << true << true;
        QTest::newRow("Statistics") << "Statistics" << false << false;
    }

    void commandsByTab() {
        QFETCH(QString, tab);
        QFETCH(bool, list);
        QFETCH(bool, records);
        OpenFixture fixture({RebateRow{.RebateID = "1", .RebateName = "Only"}});
        Board board("All"); // from a tab with everything on
        TabStrip* tabs = board.form->tbsSwitch;
        QTest::mouseClick(tabs->Bar(), Qt::LeftButton, {},
                          tabs->Bar()->tabRect(tabs->Tabs().Item(tab)->Index() - 1).center());
        QCOMPARE(board.Tab(), tab);
        for (const char* name :
             {"mnuRefresh", "mnuSelectAll", "mnuDetails", "mnuSortAscending", "mnuArrangeAll"})
            QVERIFY2(board.Action(name)->isEnabled() == list, name);
        for (const char* name :
             {"mnuDeleteRebate", "mnuEditRebate", "mnuPrintSelected", "mnuPrintPreview"})
            QVERIFY2(board.Action(name)->isEnabled() == records, name);
        for (const char* key : {"New", "Large", "Details", "AZ", "ZA", "Find", "Arrange All"})
            QVERIFY2(board.Button(key).Enabled() == list, key);
        QCOMPARE(board.Button("Delete").Enabled(), records);

        // F5 reloads on a list page and does nothing on the Statistics page; a reload that
        // can't read the table is told and logged.
        QSqlQuery(gDatabase->Connection()).exec("DELETE FROM Rebates");
        board.form->setFocus();
        QTest::keyClick(board.form, Qt::Key_F5);
        QCOMPARE(board.form->lvAll->ListItems().Count(), list ? 0 : 1);
        gDatabase->Execute("DROP TABLE Rebates");
        QTest::keyClick(board.form, Qt::Key_F5);
        QCOMPARE(fixture.Desktop().boxes.size(), list ? 1 : 0);
        QVERIFY(!list || fixture.Desktop().boxes[0].title == "Vantry! Vantry! Error");
        QCOMPARE(fixture.LogText().contains("AddAllListItems()"), list);
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void deleteRecords_data() {
        QTest::addColumn<int>("selected"); // the first rows of the list: 1, 2, 3
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("form");        // the rebate form on "2": 0 none, 1 open, 2 unsaved
        QTest::addColumn<QString>("refusal"); // what the store refuses
        QTest::addColumn<QStringList>("deleted");
        const auto row = [](const char* name, int selected, int answer, int form,
                            const char* refusal, const QStringList& deleted) {
            QTest::newRow(name) << selected << answer << form << QString(refusal) << deleted;
        };
        row("1, No", 1, vb::vbNo, 0, "", {});
        row("2, Yes, the form closed without a word", 2, vb::vbYes, 1, "", {"1", "2"});
        row("the form holds unsaved changes: refused", 2, vb::vbYes, 2, "", {});
        // The walk goes in the list's order: 1, 2, 3.
        row("the second record refused: the first goes", 3, vb::vbYes, 0, "record", {"1"});
        row("another program writing: none goes", 3, vb::vbYes, 0, "writer", {});
        row("the commit refused: none goes", 3, vb::vbYes, 0, "commit", {});
    }

    void deleteRecords() {
        QFETCH(int, selected);
        QFETCH(int, answer);
        QFETCH(int, form);
        QFETCH(QString, refusal);
        QFETCH(QStringList, deleted);
        OpenFixture fixture(PlainRebates(3));
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
        } else if (refusal == "commit") {
            // A rule checked only at the commit, broken by the last record's write.
            QVERIFY(sql.exec("PRAGMA foreign_keys = ON"));
            QVERIFY(sql.exec("CREATE TABLE Notes (RebateID TEXT REFERENCES Rebates (RebateID) "
                             "DEFERRABLE INITIALLY DEFERRED)"));
            QVERIFY(sql.exec("CREATE TRIGGER note AFTER UPDATE ON Rebates WHEN NEW.RebateID = '3' "
                             "BEGIN INSERT INTO Notes VALUES ('none such'); END"));
        }
        Board board("All");
        ListView* lv = board.form->lvAll;
        for (int i = 1; i <= 3; ++i)
            lv->ListItems().Item(i)->SetSelected(i <= selected);
        fixture.Desktop().SetNextAnswer(answer);
        std::optional<FakeRebateForm> open;
        if (form)
            open.emplace(form == 2, "2");
        lv->ActiveView()->setFocus();
        QTest::keyClick(lv->ActiveView(), Qt::Key_Delete);
        other.reset();

        const QString s = selected > 1 ? "s" : "";
        const QString asked =
            form == 2 ? QString("Unsaved Rebate | 48 | Please save the current rebate record "
                                "before attempting to delete other records.")
                      : "Delete Rebate" + s + "? | 292 | Are you sure you want to delete the " +
                            "selected rebate" + s + "?";
        const auto& boxes = fixture.Desktop().boxes;
        QCOMPARE(fixture.Desktop().Shown().first(), asked);
        QCOMPARE(boxes.size(), refusal.isEmpty() ? 1 : 2);
        if (!refusal.isEmpty()) {
            QCOMPARE(boxes[1].title, QString("Vantry! Vantry! Error"));
            QVERIFY(fixture.LogText().contains("Error Location:\t\tDeleteRebateRecord()"));
        }
        if (open) // raised and kept when unsaved, else closed without a word
            QVERIFY(form == 2 ? open->raised == 1 && !open->unloaded : open->unloaded);
        QStringList stillListed;
        for (const QString id : {"1", "2", "3"}) {
            QCOMPARE(IsDeleted(id), deleted.contains(id));
            if (!deleted.contains(id))
                stillListed << id;
        }
        QCOMPARE(SortedIDs(lv), stillListed);
        QCOMPARE(board.form->lvUnsent->ListItems().Count(), stillListed.size());
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void closing_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("stored"); // a position setting, after "Switchboard"
        QTest::newRow("No") << int(vb::vbNo) << QStringList{"Width", "1500"};
        QTest::newRow("far left") << int(vb::vbYes) << QStringList{"Left", "-300000"};
        QTest::newRow("NaN") << int(vb::vbYes) << QStringList{"Left", "nan"};
        QTest::newRow("wider than any screen") << int(vb::vbYes) << QStringList{"Width", "1400000"};
    }

    // Yes to the exit question removes the program's own temporary reports (~va*.rtf), and no
    // other file. A window the settings would put where it can't be seen or reached opens where
    // a first run puts it, and that is what is written back.
    void closing() {
        QFETCH(int, answer);
        QFETCH(QStringList, stored);
        OpenFixture fixture;
        const QRect first = Board().window->geometry();
        for (const QString name : {"Left", "Top", "Width", "Height"})
            SaveSetting(kAppTitle, "Settings", "Switchboard" + name,
                        name == stored[0] ? stored[1] : "1500");
        const auto part = [&stored](const QRect& r) {
            return stored[0] == "Left" ? r.x() : r.width();
        };
        const QStringList files{"~va1.rtf", "~va2.rtf", "~vb.rtf"};
        for (const QString& name : files)
            QVERIFY(QFile(TempPath() + "/" + name).open(QIODevice::WriteOnly));
        Board board;
        QCOMPARE(part(board.window->geometry()), part(first));
        fixture.Desktop().SetNextAnswer(answer);
        const bool yes = answer == vb::vbYes;
        QCOMPARE(board.window->close(), yes);
        QCOMPARE(fixture.Desktop().Shown(),
                 QStringList{"Exiting Vantry! Vantry! | 36 | Do you really want to exit the "
                             "application?"});
        for (const QString& name : files)
            QCOMPARE(QFile::remove(TempPath() + "/" + name), !yes || name == "~vb.rtf");
        if (yes) {
            QTRY_COMPARE(frmSwitchboard::Instance(), nullptr);
            board.window = nullptr;
            QCOMPARE(GetSetting(kAppTitle, "Settings", "Switchboard" + stored[0]).toDouble(),
                     part(first) * 15.0);
        }
    }

    void deadlineRows_data() {
        QTest::addColumn<QList<RebateRow>>("rows");
        QTest::addColumn<QStringList>("shown");

        RebateRow sent = ExpiresIn("sent", 1);
        sent.DateSent = kToday.addDays(-1);
        RebateRow deleted = ExpiresIn("deleted", 1);
        deleted.Deleted = true;
        RebateRow noDate = ExpiresIn("no date", 0);
        noDate.ExpDate = std::nullopt;
        QTest::newRow("most urgent first, the late ones on top")
            << QList<RebateRow>{ExpiresIn("a", 7), ExpiresIn("b", -3), ExpiresIn("c", 0),
                                ExpiresIn("d", 8), ExpiresIn("e", -1)}
            << QStringList{"3 days late | Claim b | 11/20/2026",
                           "1 day late | Claim e | 11/22/2026", "Today | Claim c | 11/23/2026",
                           "7 days | Claim a | 11/30/2026"};
        QTest::newRow("sent, deleted or without a date: not shown")
            << QList<RebateRow>{sent, deleted, noDate, ExpiresIn("g", 2)}
            << QStringList{"2 days | Claim g | 11/25/2026"};
        QTest::newRow("more than 30 days late: given up")
            << QList<RebateRow>{ExpiresIn("a", -31), ExpiresIn("b", -30)}
            << QStringList{"30 days late | Claim b | 10/24/2026"};
    }
    void deadlineRows() {
        QFETCH(QList<RebateRow>, rows);
        QFETCH(QStringList, shown);
        OpenFixture fixture(rows);
        ProgramWindow program;
        DeadlinePanel* panel = program.Switchboard().Deadlines();
        QCOMPARE(PanelRows(panel), shown);
        QVERIFY(panel->lblDeadlines->text().startsWith(
            QString("Postmark deadlines: %1 unsent rebate").arg(shown.size())));
    }

    // Enter opens the claim in the rebate form; what is saved or deleted elsewhere, and the
    // options' days (OK), reach the panel at once.
    void deadlineOpensAndFollows() {
        OpenFixture fixture({ExpiresIn("1", 5), ExpiresIn("2", 2), ExpiresIn("3", 1)});
        ProgramWindow program;
        DeadlinePanel* panel = program.Switchboard().Deadlines();
        panel->lvDeadlines->setCurrentItem(panel->lvDeadlines->topLevelItem(2));
        panel->lvDeadlines->setFocus();
        QTest::keyClick(panel->lvDeadlines, Qt::Key_Return);
        frmRebate* form = frmRebate::Instance();
        QVERIFY(form);
        QCOMPARE(form->RebateID(), QString("1"));
        form->Unload();

        gDatabase->Execute("UPDATE Rebates SET DateSent = '2026-11-23' WHERE RebateID = '3'");
        Q_EMIT Notifier::Instance().RecordSaved("3");
        QCOMPARE(PanelRows(panel),
                 (QStringList{"2 days | Claim 2 | 11/25/2026", "5 days | Claim 1 | 11/28/2026"}));
        {
            frmOptions options;
            options.chkDeadlines->setChecked(true);
            options.DeadlineDays->setValue(3);
            QTest::mouseClick(options.cmdOK, Qt::LeftButton);
        }
        QCOMPARE(GetSetting(kAppTitle, "Options", "chkDeadlines"), QString("1"));
        QCOMPARE(GetSetting(kAppTitle, "Options", "DeadlineDays"), QString("3"));
        QCOMPARE(PanelRows(panel), QStringList{"2 days | Claim 2 | 11/25/2026"});
        gDatabase->Execute("UPDATE Rebates SET Deleted = True WHERE RebateID = '2'");
        Q_EMIT Notifier::Instance().RecordDeleted("2");
        QCOMPARE(PanelRows(panel), QStringList{});
        QCOMPARE(panel->lblDeadlines->text(),
                 QString("Postmark deadlines: no unsent rebate expires within 3 days."));
    }
};

QTEST_MAIN(tst_switchboard)
#include "tst_switchboard.moc"
