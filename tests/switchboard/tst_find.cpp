#include "Fixture.h"
#include "Forms.h"
#include "Globals.h"
#include "ListView.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "Settings.h"
#include "Toolbar.h"
#include "frmFind.h"
#include "frmMDI.h"
#include "frmSwitchboard.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <functional>

namespace {

// One record in each status. Their rows read (dates as the lists write them):
//   Unsent    "No date: Alpha Unsent", "No date: Golf 47 Unsent", "No date: Twin" (twice)
//   Pending   "11/10/2026: Bravo Pending", "11/12/2026: Hotel Pending"
//   Overdue   "8/1/2026: Charlie Overdue"
//   Paid      "3/15/2000: Delta Paid"
//   Followup  "7/1/2026: Echo Followup"
//   Rejected  "6/1/2026: Foxtrot Rejected"
// and each again in All.
QList<RebateRow> OneOfEach() {
    return {
        {.RebateID = "1", .RebateName = QString("Alpha Unsent")},
        {.RebateID = "2",
         .RebateName = QString("Bravo Pending"),
         .DateSent = QDate(2026, 11, 10),
         .DateDue = QDate(2027, 1, 5)},
        {.RebateID = "3",
         .RebateName = QString("Charlie Overdue"),
         .DateSent = QDate(2026, 8, 1),
         .DateDue = QDate(2026, 9, 26)},
        {.RebateID = "4",
         .RebateName = QString("Delta Paid"),
         .DateSent = QDate(2000, 3, 15),
         .AmountReceived = 5.0,
         .DateReceived = QDate(2000, 5, 1)},
        {.RebateID = "5",
         .RebateName = QString("Echo Followup"),
         .DateSent = QDate(2026, 7, 1),
         .FollowupDate = QDate(2026, 11, 1)},
        {.RebateID = "6",
         .RebateName = QString("Foxtrot Rejected"),
         .DateSent = QDate(2026, 6, 1),
         .Rejected = true},
        {.RebateID = "7", .RebateName = QString("Golf 47 Unsent")},
        {.RebateID = "8",
         .RebateName = QString("Hotel Pending"),
         .DateSent = QDate(2026, 11, 12),
         .DateDue = QDate(2027, 1, 7)},
        {.RebateID = "9", .RebateName = QString("Twin")},
        {.RebateID = "99887766", .RebateName = QString("Twin")},
    };
}

// The selected rows of a list, by text.
QStringList SelectedRows(ListView* lv) {
    QStringList selected;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        if (lv->ListItems().Item(i)->Selected())
            selected << lv->ListItems().Item(i)->Text();
    return selected;
}

int IndexOf(ListView* lv, const QString& text, int from = 1) {
    for (int i = from; i <= lv->ListItems().Count(); ++i)
        if (lv->ListItems().Item(i)->Text() == text)
            return i;
    return 0;
}

} // namespace

class tst_find : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void ringFromEachPage_data();
    void ringFromEachPage();
    void patterns_data();
    void patterns();
    void secondSearchGoesOnThroughTheRing();
    void twinsOfTheStartRow();
    void searchInAnEmptyDatabase();
    void openBracketIsLogged();
    void emptyTextCannotBeSearched();
    void modalFromTheCommandsWithTheLastText_data();
    void modalFromTheCommandsWithTheLastText();
    void modelessFromF7();
    void positionIsRemembered();

private:
    // Opens Find from the toolbar's Find button (modal), runs `whileOpen` in it, then closes it
    // with Cancel.
    void WithModalFind(const std::function<void(frmFind&)>& whileOpen);
    // Types the text into the dialog and clicks Find.
    static void Search(frmFind& find, const QString& text);

    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<ProgramWindow> mProgram;
};

void tst_find::initTestCase() {
    InitTestResources();
}

void tst_find::init() {
    mFixture = std::make_unique<Fixture>();
    mFixture->OpenDatabase();
    // The Switchboard opens on "New" even with a rebate overdue.
    SaveSetting(kAppTitle, QStringLiteral("Options"), QStringLiteral("chkAlarm"),
                QStringLiteral("0"));
}

void tst_find::cleanup() {
    delete frmFind::Instance();
    mProgram.reset();
    mFixture.reset();
}

void tst_find::Search(frmFind& find, const QString& text) {
    find.Text1->clear();
    QTest::keyClicks(find.Text1, text);
    QTest::mouseClick(find.cmdFind, Qt::LeftButton);
}

void tst_find::WithModalFind(const std::function<void(frmFind&)>& whileOpen) {
    bool ran = false;
    QTimer::singleShot(0, this, [&] {
        frmFind* find = frmFind::Instance();
        QVERIFY(find);
        // A failed check inside still closes the dialog, so the test goes on to report it.
        const auto closeAtEnd = qScopeGuard([find] { find->reject(); });
        QVERIFY(find->isModal());
        whileOpen(*find);
        ran = !QTest::currentTestFailed();
    });
    QAction* command = mProgram->Switchboard().mnuFind;
    QVERIFY(command->isEnabled());
    command->trigger();
    QVERIFY(ran);
    QVERIFY(!frmFind::Instance());
}

void tst_find::ringFromEachPage_data() {
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("findWhat");
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("row");
    QTest::newRow("New starts at Unsent") << "New"
                                          << "alpha"
                                          << "Unsent"
                                          << "No date: Alpha Unsent";
    QTest::newRow("Statistics starts at Unsent") << "Statistics"
                                                 << "charlie"
                                                 << "Overdue"
                                                 << "8/1/2026: Charlie Overdue";
    QTest::newRow("Unsent goes on to Pending") << "Unsent"
                                               << "bravo"
                                               << "Pending"
                                               << "11/10/2026: Bravo Pending";
    QTest::newRow("Pending reaches All before Unsent") << "Pending"
                                                       << "alpha"
                                                       << "All"
                                                       << "No date: Alpha Unsent";
    QTest::newRow("Overdue reaches All before Pending") << "Overdue"
                                                        << "bravo"
                                                        << "All"
                                                        << "11/10/2026: Bravo Pending";
    QTest::newRow("Paid goes on to Rejected") << "Paid"
                                              << "foxtrot"
                                              << "Rejected"
                                              << "6/1/2026: Foxtrot Rejected";
    QTest::newRow("Active Followups reaches All before Paid") << "Active Followups"
                                                              << "delta"
                                                              << "All"
                                                              << "3/15/2000: Delta Paid";
    QTest::newRow("Rejected reaches All before Followup") << "Rejected"
                                                          << "echo"
                                                          << "All"
                                                          << "7/1/2026: Echo Followup";
    QTest::newRow("All finds below its start row") << "All"
                                                   << "golf"
                                                   << "All"
                                                   << "No date: Golf 47 Unsent";
    QTest::newRow("All passes its own start row, then Pending") << "All"
                                                                << "bravo"
                                                                << "Pending"
                                                                << "11/10/2026: Bravo Pending";
}

void tst_find::ringFromEachPage() {
    QFETCH(QString, page);
    QFETCH(QString, findWhat);
    QFETCH(QString, tab);
    QFETCH(QString, row);
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    mProgram->ClickTab(page);

    WithModalFind([&](frmFind& find) {
        Search(find, findWhat);
        QCOMPARE(mProgram->CurrentTab(), tab);
        ListView* lv = mProgram->Switchboard().GetCurrentLV();
        QCOMPARE(SelectedRows(lv), QStringList{row});
        QCOMPARE(lv->SelectedItem()->Text(), row);
        QCOMPARE(StatusText(), QStringLiteral("Ready..."));
    });
    QVERIFY(mFixture->Desktop().boxes.isEmpty());
}

void tst_find::patterns_data() {
    QTest::addColumn<QString>("findWhat");
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("row"); // "" when nothing is found
    QTest::newRow("no date") << "no date"
                             << "Unsent"
                             << "No date: Alpha Unsent";
    QTest::newRow("No Date in capitals") << "NO DATE"
                                         << "Unsent"
                                         << "No date: Alpha Unsent";
    QTest::newRow("capitals") << "HOTEL"
                              << "Pending"
                              << "11/12/2026: Hotel Pending";
    QTest::newRow("date prefix") << "2000"
                                 << "Paid"
                                 << "3/15/2000: Delta Paid";
    QTest::newRow("star") << "ch*ue"
                          << "Overdue"
                          << "8/1/2026: Charlie Overdue";
    QTest::newRow("question mark") << "h?tel"
                                   << "Pending"
                                   << "11/12/2026: Hotel Pending";
    QTest::newRow("digit") << "#7 u"
                           << "Unsent"
                           << "No date: Golf 47 Unsent";
    QTest::newRow("set") << "[xf]ox"
                         << "Rejected"
                         << "6/1/2026: Foxtrot Rejected";
    QTest::newRow("range") << "[d-e]cho"
                           << "Active Followups"
                           << "7/1/2026: Echo Followup";
    QTest::newRow("negated set") << "[!6-7]/1/2026"
                                 << "Overdue"
                                 << "8/1/2026: Charlie Overdue";
    QTest::newRow("the product isn't searched") << "product"
                                                << "New"
                                                << "";
    QTest::newRow("the hidden id isn't searched") << "99887766"
                                                  << "New"
                                                  << "";
}

void tst_find::patterns() {
    QFETCH(QString, findWhat);
    QFETCH(QString, tab);
    QFETCH(QString, row);
    QList<RebateRow> rows = OneOfEach();
    for (RebateRow& r : rows)
        r.ProductName = QStringLiteral("Product");
    InsertRebates(rows);
    mProgram = std::make_unique<ProgramWindow>();

    WithModalFind([&](frmFind& find) { Search(find, findWhat); });

    QCOMPARE(mProgram->CurrentTab(), tab);
    const auto& boxes = mFixture->Desktop().boxes;
    if (row.isEmpty()) {
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().prompt,
                 QStringLiteral("Cannot find '") + findWhat + QStringLiteral("' in the database."));
    } else {
        QVERIFY(boxes.isEmpty());
        QCOMPARE(SelectedRows(mProgram->Switchboard().GetCurrentLV()), QStringList{row});
    }
}

void tst_find::secondSearchGoesOnThroughTheRing() {
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    mProgram->ClickTab(QStringLiteral("Pending"));
    ListView* lvPending = mProgram->Switchboard().lvPending;
    ProgramWindow::ClickRow(lvPending, IndexOf(lvPending, "11/10/2026: Bravo Pending"));

    WithModalFind([&](frmFind& find) {
        Search(find, QStringLiteral("hotel"));
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Pending"));
        QCOMPARE(SelectedRows(lvPending), QStringList{"11/12/2026: Hotel Pending"});
        // Find again: the same record, now in All.
        QTest::mouseClick(find.cmdFind, Qt::LeftButton);
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("All"));
        QCOMPARE(SelectedRows(mProgram->Switchboard().lvAll),
                 QStringList{"11/12/2026: Hotel Pending"});
        // And once more: the search from All doesn't wrap into its own rows above the start.
        QTest::mouseClick(find.cmdFind, Qt::LeftButton);
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Pending"));
    });
}

void tst_find::twinsOfTheStartRow() {
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    mProgram->ClickTab(QStringLiteral("Unsent"));
    ListView* lvUnsent = mProgram->Switchboard().lvUnsent;
    const int firstTwin = IndexOf(lvUnsent, "No date: Twin");
    const int secondTwin = IndexOf(lvUnsent, "No date: Twin", firstTwin + 1);
    QVERIFY(firstTwin > 0 && secondTwin > firstTwin);

    ProgramWindow::ClickRow(lvUnsent, firstTwin);
    WithModalFind([&](frmFind& find) {
        // From the first twin: it is passed over as the start, the second one is the hit.
        Search(find, QStringLiteral("twin"));
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Unsent"));
        QCOMPARE(lvUnsent->SelectedItem()->Index(), secondTwin);
        // From the second: the first twin is the row passed over, the second isn't below
        // itself, so the search leaves the list.
        QTest::mouseClick(find.cmdFind, Qt::LeftButton);
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("All"));
        QCOMPARE(mProgram->Switchboard().lvAll->SelectedItem()->Text(),
                 QStringLiteral("No date: Twin"));
    });
}

void tst_find::searchInAnEmptyDatabase() {
    mProgram = std::make_unique<ProgramWindow>();
    WithModalFind([&](frmFind& find) {
        Search(find, QStringLiteral("Anything"));
        QCOMPARE(StatusText(), QStringLiteral("Ready..."));
    });
    const auto& boxes = mFixture->Desktop().boxes;
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.first().prompt, QStringLiteral("Cannot find 'Anything' in the database."));
    QCOMPARE(boxes.first().title, QStringLiteral("No Matching Rebate Found"));
    QCOMPARE(boxes.first().style, 64);
    QCOMPARE(mProgram->CurrentTab(), QStringLiteral("New"));
}

void tst_find::openBracketIsLogged() {
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    WithModalFind([&](frmFind& find) {
        Search(find, QStringLiteral("[ab"));
        QVERIFY(find.isVisible());
        QCOMPARE(StatusText(), QStringLiteral("Ready..."));
        // The dialog still works.
        Search(find, QStringLiteral("alpha"));
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Unsent"));
    });
    const auto& boxes = mFixture->Desktop().boxes;
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.first().title, QStringLiteral("Vantry! Vantry! Error"));
    QCOMPARE(boxes.first().style & 48, 48);
    QFile log(mFixture->LogPath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QString entry = QString::fromUtf8(log.readAll());
    QVERIFY2(entry.contains(QStringLiteral("cmdFind_Click")), qPrintable(entry));
    QVERIFY2(entry.contains(QStringLiteral("93")), qPrintable(entry));
}

void tst_find::emptyTextCannotBeSearched() {
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    WithModalFind([&](frmFind& find) {
        QVERIFY(find.Text1->text().isEmpty());
        QVERIFY(!find.cmdFind->isEnabled());
        QTest::keyClick(find.Text1, Qt::Key_Return);
        QVERIFY(find.isVisible());
        QTest::keyClicks(find.Text1, QStringLiteral("a"));
        QVERIFY(find.cmdFind->isEnabled());
        QTest::keyClick(find.Text1, Qt::Key_Backspace);
        QVERIFY(!find.cmdFind->isEnabled());
    });
    QCOMPARE(mProgram->CurrentTab(), QStringLiteral("New"));
    QVERIFY(gFindWhat.isEmpty());
    QVERIFY(mFixture->Desktop().boxes.isEmpty());
}

void tst_find::modalFromTheCommandsWithTheLastText_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("Edit menu") << "menu";
    QTest::newRow("popup menu") << "popup";
    QTest::newRow("Ctrl+F") << "keys";
    QTest::newRow("toolbar") << "toolbar";
}

void tst_find::modalFromTheCommandsWithTheLastText() {
    QFETCH(QString, command);
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    frmSwitchboard& sb = mProgram->Switchboard();
    mProgram->ClickTab(QStringLiteral("All"));
    gFindWhat = QStringLiteral("Echo");

    bool ran = false;
    QTimer::singleShot(0, this, [&] {
        frmFind* find = frmFind::Instance();
        QVERIFY(find);
        const auto closeAtEnd = qScopeGuard([find] { find->reject(); });
        QCOMPARE(QApplication::activeModalWidget(), find);
        QCOMPARE(find->windowTitle(), QStringLiteral("Find"));
        QCOMPARE(QAccessible::queryAccessibleInterface(find->Text1)->text(QAccessible::Name),
                 QStringLiteral("Find What:"));
        QCOMPARE(find->Text1->text(), QStringLiteral("Echo"));
        QCOMPARE(find->Text1->selectedText(), QStringLiteral("Echo"));
        QVERIFY(find->cmdFind->isEnabled());
        QTest::keyClick(find->Text1, Qt::Key_Return); // Find is the default button
        QCOMPARE(mProgram->CurrentTab(), QStringLiteral("All"));
        QCOMPARE(SelectedRows(sb.lvAll), QStringList{"7/1/2026: Echo Followup"});
        QTest::keyClick(find->Text1, Qt::Key_Escape);
        ran = true;
    });
    if (command == QLatin1String("keys")) {
        sb.lvAll->ActiveView()->setFocus();
        QTest::keyClick(sb.lvAll->ActiveView(), Qt::Key_F, Qt::ControlModifier);
    } else if (command == QLatin1String("toolbar")) {
        QTest::mouseClick(sb.xToolbar->Buttons(QStringLiteral("Find")).Widget(), Qt::LeftButton);
    } else {
        QAction* action = command == QLatin1String("menu") ? sb.mnuFind : sb.mnuPopupFind;
        QVERIFY(action->isEnabled());
        action->trigger();
    }
    QTRY_VERIFY(ran);
    QTRY_VERIFY(!frmFind::Instance());
}

void tst_find::modelessFromF7() {
    InsertRebates(OneOfEach());
    mProgram = std::make_unique<ProgramWindow>();
    frmSwitchboard& sb = mProgram->Switchboard();
    gFindWhat = QStringLiteral("remembered");
    sb.lvNew->ActiveView()->setFocus();
    QTest::keyClick(sb.lvNew->ActiveView(), Qt::Key_F7);

    frmFind* find = frmFind::Instance();
    QVERIFY(find);
    QVERIFY(find->isVisible());
    QVERIFY(!find->isModal());
    QVERIFY(!QApplication::activeModalWidget());
    // Loaded by F7, it still shows the last text.
    QCOMPARE(find->Text1->text(), QStringLiteral("remembered"));

    // The user can change the page between two searches; each takes the current list anew.
    Search(*find, QStringLiteral("delta"));
    QCOMPARE(mProgram->CurrentTab(), QStringLiteral("Paid"));
    mProgram->ClickTab(QStringLiteral("Rejected"));
    QTest::mouseClick(find->cmdFind, Qt::LeftButton);
    QCOMPARE(mProgram->CurrentTab(), QStringLiteral("All"));

    // The Find command while it is open keeps it modeless and hands it the last text.
    gFindWhat = QStringLiteral("other");
    sb.mnuFind->trigger();
    QCOMPARE(frmFind::Instance(), find);
    QVERIFY(!find->isModal());
    QCOMPARE(find->Text1->text(), QStringLiteral("other"));
    QTest::mouseClick(find->cmdCancel, Qt::LeftButton);
    QTRY_VERIFY(!frmFind::Instance());
}

void tst_find::positionIsRemembered() {
    mProgram = std::make_unique<ProgramWindow>();
    frmFind& find = frmFind::Load(&mProgram->Mdi());
    find.show();
    find.move(150, 90);
    QTest::mouseClick(find.cmdCancel, Qt::LeftButton);
    QTRY_VERIFY(!frmFind::Instance());
    QCOMPARE(GetSetting(kAppTitle, "Settings", "FindLeft"), QStringLiteral("2250"));
    QCOMPARE(GetSetting(kAppTitle, "Settings", "FindTop"), QStringLiteral("1350"));

    frmFind& again = frmFind::Load(&mProgram->Mdi());
    QCOMPARE(again.pos(), QPoint(150, 90));
}

QTEST_MAIN(tst_find)
#include "tst_find.moc"
