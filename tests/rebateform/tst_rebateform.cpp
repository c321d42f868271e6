#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "common/core/Clock.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/ui/Forms.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"

#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSqlQuery>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

using namespace RebateFormDriver;

namespace {
// The record check's text for a required field ("a Rebate Name").
QString Must(const QString& what) {
    return "You must enter " + what + " before saving the record.";
}

const QString kStored = "20261101090000";

// A stored record with every always-required field and a few more.
RebateRow StoredRow(const QString& id = kStored) {
    return {.RebateID = id,
            .RebateName = "Router Rebate",
            .Address = "PO Box 1, El Paso, TX",
            .Email = "help@router.example",
            .ProductName = "Router",
            .PurchasePrice = 89.99,
            .RebateAmount = 30.0,
            .PostagePrice = 0.5,
            .DateSent = QDate(2026, 11, 2),
            .DateDue = QDate(2026, 12, 28),
            .FollowupDate = QDate(2026, 11, 20),
            .FollowupPostage = 0.32};
}

// Field texts by index, as a data column.
QVariantMap Fields(std::initializer_list<std::pair<int, QString>> items) {
    QVariantMap map;
    for (const auto& [index, text] : items)
        map.insert(QString::number(index), text);
    return map;
}

void SetFields(frmRebate* form, const QVariantMap& fields) {
    for (auto it = fields.cbegin(); it != fields.cend(); ++it)
        form->txtFields(it.key().toInt())->setText(it.value().toString());
}

QAction* MenuAction(frmRebate* form, const QString& name) {
    for (QMenu* menu : form->Menus())
        for (QAction* action : menu->actions())
            if (action->objectName() == name)
                return action;
    return nullptr;
}
} // namespace

class tst_rebateform : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<MainWindowFixture>();
        mMain = mFixture->Main();
    }
    void cleanup() { mFixture.reset(); }

    void states_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<bool>("save");
        QTest::addColumn<bool>("print");
        QTest::addColumn<bool>("remove");
        QTest::addColumn<QString>("caption");
        const auto row = [](const char* name, const char* how, bool save, bool print, bool remove,
                            const char* shown) {
            QTest::newRow(name) << QString(how) << save << print << remove
                                << QString("Rebate Form - [%1]").arg(shown);
        };
        row("new, untouched", "new", false, false, false, "New Record");
        row("new, edited", "new+type", true, false, false, "Spring Mail-In");
        row("new, rejected box", "new+check", true, false, false, "New Record");
        row("saved, clean", "new+save", false, true, true, "Spring Mail-In");
        row("saved, edited", "new+save+type", true, true, true, "Spring Mail-In 2");
        row("opened", "open", false, true, true, "Router Rebate");
        row("opened, edited", "open+check", true, true, true, "Router Rebate");
    }
    void states() {
        QFETCH(QString, how);
        QFETCH(bool, save);
        QFETCH(bool, print);
        QFETCH(bool, remove);
        QFETCH(QString, caption);
        InsertRebates({StoredRow()});
        frmRebate* form = how.startsWith("open") ? OpenExisting(kStored) : OpenNew();
        if (how.contains("type") || how.contains("save"))
            FillRequired(form);
        if (how.contains("save"))
            form->mnuSaveRecord_Click();
        if (how.contains("save+type"))
            Type(form, 20, "Spring Mail-In 2");
        if (how.contains("check"))
            Enter(form, 16), form->chkFields(21)->click();

        QCOMPARE(form->findChild<QPushButton*>("cmdOK")->isEnabled(), save);
        QCOMPARE(MenuAction(form, "mnuSaveRecord")->isEnabled(), save);
        QCOMPARE(MenuAction(form, "mnuSaveRecordAndCloseForm")->isEnabled(), save);
        QCOMPARE(ButtonEnabled(3), save);
        QCOMPARE(MenuAction(form, "mnuPrint")->isEnabled(), print);
        QCOMPARE(ButtonEnabled(4), print);
        QCOMPARE(form->findChild<QPushButton*>("cmdDelete")->isEnabled(), remove);
        QCOMPARE(ButtonEnabled(6), remove);
        QCOMPARE(form->RecordChanged(), save);
        if (!print) {
            // The main window's Print on a record never saved explains instead.
            form->Print();
            QCOMPARE(mFixture->Desktop().boxes.size(), 1);
            QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Unsaved Record"));
            QCOMPARE(mFixture->Desktop().boxes[0].style, 64);
        }
        QCOMPARE(form->windowTitle(), caption);
        // The record buttons of the main toolbar show while the form is the active child.
        QVERIFY(ButtonVisible(3) && ButtonVisible(6) && ButtonVisible(8));
        QCOMPARE(mMain->menuBar()->actions().first()->text(), QString("&File"));
        // Untouched, the form starts in its first field, whose status text shows.
        if (how == "new" || how == "open") {
            QCOMPARE(QApplication::focusWidget(), form->txtFields(RebateField::ProductName));
            QCOMPARE(form->findChild<QLabel*>("lblStatus")->text(),
                     QString("Name of product purchased..."));
        }
    }
    // The field texts (by index, over a record holding the four always-required fields), the
    // page on top, then what the check says: the box's title and text, the page after and the
    // field that gets the focus ("" for a check that passes, -1 for the focus staying put).
    void validateRecord_data() {
        QTest::addColumn<QVariantMap>("fields");
        QTest::addColumn<QString>("startTab");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tab");
        QTest::addColumn<int>("focus");
        using Items = std::initializer_list<std::pair<int, QString>>;
        const auto row = [](const char* name, Items fields, const char* start, const QString& title,
                            const QString& text, const char* tab, int focus) {
            QTest::newRow(name) << Fields(fields) << QString(start) << title << text << QString(tab)
                                << focus;
        };
        // "a Rebate Name": the box "Missing Rebate Name" asks for it.
        const auto must = [row](const char* name, Items fields, const char* start,
                                const QString& what, const char* tab, int focus) {
            row(name, fields, start, "Missing " + what.section(' ', 1),
                "You must enter " + what + " before saving the record.", tab, focus);
        };
        const auto invalid = [row](const char* name, Items fields, const char* start,
                                   const char* field, const char* tab, int focus) {
            row(name, fields, start, "Dates Invalid",
                QString(field) + " must be greater than the Date Sent.", tab, focus);
        };
        const auto passes = [row](const char* name, Items fields, const char* start) {
            row(name, fields, start, QString(), QString(), start, -1);
        };
        const char *product = "Product Info", *rebate = "Rebate Info", *followup = "Followup Info";
        must("1 rebate name", {{20, ""}}, product, "a Rebate Name", rebate, 20);
        must("2 product name", {{14, ""}}, rebate, "a Product Name", product, 14);
        must("3 purchase price", {{2, ""}}, followup, "a Purchase Price", product, 2);
        must("4 rebate amount", {{4, ""}}, product, "a Rebate Amount", rebate, 4);
        must("5 date due", {{5, "11/10/2026"}, {9, ""}}, product, "a Date Due", rebate, 9);
        must("5 from Followup Info, tab stays", {{5, "11/10/2026"}, {9, ""}}, followup,
             "a Date Due", followup, -1);
        must("6 date sent", {{9, "12/1/2026"}}, product, "a Date Sent", rebate, 5);
        must("7 postage without date sent", {{6, "$0.32"}}, rebate, "a Date Sent", rebate, 5);
        passes("7 zero postage passes", {{6, "$0.00"}}, rebate);
        must("8 amount without date", {{8, "$10.00"}}, followup, "a Date Received", rebate, 10);
        passes("8 zero amount passes", {{8, "$0.00"}}, rebate);
        must("9 date without amount", {{10, "11/20/2026"}}, rebate, "an Amount Received", rebate,
             8);
        must("10 followup postage", {{12, "$0.32"}}, product, "a Followup Date", followup, 11);
        passes("10 zero followup postage passes", {{12, "0.00"}}, product);
        invalid("11 received before sent",
                {{5, "11/10/2026"}, {9, "1/5/2027"}, {10, "11/9/2026"}, {8, "$10.00"}}, rebate,
                "Date Received", rebate, 10);
        passes("11 same day passes",
               {{5, "11/10/2026"}, {9, "1/5/2027"}, {10, "11/10/2026"}, {8, "$10.00"}}, rebate);
        invalid("12 due before sent", {{5, "11/10/2026"}, {9, "11/09/2026"}}, rebate, "Date Due",
                rebate, 9);
        invalid("13 followup before sent", {{5, "11/10/2026"}, {9, "1/5/2027"}, {11, "11/1/2026"}},
                product, "Followup Date", followup, 11);
        passes("rejected box never required", {{16, "Missing receipt"}}, followup);
    }
    void validateRecord() {
        QFETCH(QVariantMap, fields);
        QFETCH(QString, startTab);
        QFETCH(QString, title);
        QFETCH(QString, text);
        QFETCH(QString, tab);
        QFETCH(int, focus);
        frmRebate* form = OpenNew();
        form->txtFields(RebateField::RebateName)->setText("Spring Mail-In");
        form->txtFields(RebateField::ProductName)->setText("Toaster");
        form->txtFields(RebateField::PurchasePrice)->setText("$24.99");
        form->txtFields(RebateField::RebateAmount)->setText("$10.00");
        SetFields(form, fields);
        auto* tabs = form->findChild<QTabWidget*>("tbsTabs");
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->tabText(i) == startTab)
                tabs->setCurrentIndex(i);
        tabs->setFocus();
        auto& desktop = mFixture->Desktop();
        desktop.boxes.clear();

        form->mnuSaveRecord_Click(); // the toolbar's Save: no focus move first
        if (title.isEmpty()) {
            QVERIFY(desktop.boxes.isEmpty());
            QCOMPARE(CountRebates(), 1);
            QCOMPARE(form->RebateID(), QString("20261123100000"));
            return;
        }
        // The focus arriving in Amount Rec'd asks its question, as whenever it arrives there.
        QCOMPARE(desktop.boxes.size(), focus == 8 ? 2 : 1);
        if (focus == 8)
            QCOMPARE(desktop.boxes[1].title, QString("Amount Received"));
        QCOMPARE(desktop.Shown().first(), title + " | 48 | " + text);
        QCOMPARE(desktop.beeps, 1);
        QCOMPARE(CurrentTab(form), tab);
        if (focus >= 0)
            QTRY_COMPARE(QApplication::focusWidget(), form->txtFields(focus));
        else
            QCOMPARE(QApplication::focusWidget(), tabs->tabBar());
        QCOMPARE(CountRebates(), 0);
        QVERIFY(form->RebateID().isEmpty());
        QVERIFY(!QFile::exists(mFixture->LogPath()));
    }
    void newRecordSavedOnceAndAgain() {
        frmRebate* form = OpenNew();
        FillRequired(form);
        QVERIFY(form->RebateID().isEmpty());
        form->mnuSaveRecord_Click();
        QCOMPARE(form->RebateID(), QString("20261123100000"));
        QCOMPARE(CountRebates(), 1);
        QVERIFY(gbRecordSaved);
        QCOMPARE(gsSavedRebateID, QString("20261123100000"));

        Clock::Advance(90);
        Type(form, 20, "Spring Mail-In, corrected");
        mMain->tbToolBar_ButtonClick("Save"); // the main toolbar reaches the form
        QVERIFY(!form->RecordChanged());
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(form->RebateID(), QString("20261123100000"));
        QCOMPARE(ReadRawRebate("20261123100000").value("RebateName").toString(),
                 QString("Spring Mail-In, corrected"));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }
    void keyTakesNextFreeSecond() {
        InsertRebates({StoredRow("20261123100000"), StoredRow("20261123100001")});
        frmRebate* form = OpenNew();
        FillRequired(form);
        form->mnuSaveRecord_Click();
        QCOMPARE(form->RebateID(), QString("20261123100002"));
        QCOMPARE(CountRebates(), 3);
        QCOMPARE(ReadRawRebate("20261123100000").value("RebateName").toString(),
                 QString("Router Rebate"));
    }
    // A field's text on the stored record (set, then saved through the form), the column and
    // the raw value the row holds afterwards: money in ten-thousandths, Null as a null QVariant.
    void writtenValues_data() {
        QTest::addColumn<QVariantMap>("fields");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("stored");
        const auto row = [](const char* name, std::initializer_list<std::pair<int, QString>> fields,
                            const char* column, const QVariant& stored) {
            QTest::newRow(name) << Fields(fields) << QString(column) << stored;
        };
        const auto money = [](qlonglong raw) {
            return QVariant(raw);
        };
        row("money to the cent", {{2, "$19.99"}}, "PurchasePrice", money(199900));
        row("large money exact", {{3, "$123456.78"}}, "CouponAmount", money(1234567800));
        row("empty coupon is zero", {{3, ""}}, "CouponAmount", money(0));
        row("email cleared is Null", {{7, ""}}, "Email", QVariant());
        row("address cleared stays text", {{0, ""}}, "Address", QVariant(""));
        row("postage cleared keeps the old value", {{6, ""}}, "PostagePrice", money(5000));
        row("followup postage is the default", {{11, "11/20/2026"}, {12, "$1.00"}},
            "FollowupPostage", money(3200));
        row("followup date cleared, postage zero", {{11, ""}}, "FollowupPostage", money(0));
        row("phone as it stands", {{13, "(800) FLOWERS"}}, "PhoneNumber",
            QVariant("(800) FLOWERS"));
        row("date", {{10, "11/20/2026"}, {8, "$30.00"}}, "DateReceived", QVariant("2026-11-20"));
        row("received cleared is zero", {{8, ""}}, "AmountReceived", money(0));
    }
    void writtenValues() {
        QFETCH(QVariantMap, fields);
        QFETCH(QString, column);
        QFETCH(QVariant, stored);
        InsertRebates({StoredRow()});
        frmRebate* form = OpenExisting(kStored);
        SetFields(form, fields);
        form->mnuSaveRecord_Click();
        QVERIFY2(mFixture->Desktop().boxes.isEmpty(),
                 qPrintable(mFixture->Desktop().boxes.value(0).prompt));
        const QVariant raw = ReadRawRebate(kStored).value(column);
        if (stored.isNull())
            QVERIFY(raw.isNull());
        else
            QCOMPARE(raw, stored);
    }
    // Money that isn't an amount in Postage Price, then a way out of the field: each checks the
    // field first, which refuses, so the focus, the page and the table stay as they were. Leaving
    // the program's window is no move within the form and checks nothing.
    void vetoedField_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("boxes");
        QTest::newRow("click on OK") << "ok" << 1;
        QTest::newRow("access key of OK") << "alt+o" << 1;
        QTest::newRow("click on another field") << "field" << 1;
        QTest::newRow("click on a tab") << "tab" << 1;
        QTest::newRow("Ctrl+Tab") << "ctrl+tab" << 1;
        QTest::newRow("record check going to another page") << "save" << 2;
        QTest::newRow("another window") << "window" << 0;
    }
    void vetoedField() {
        QFETCH(QString, how);
        QFETCH(int, boxes);
        // Each box takes the focus away as on a desktop; it comes back as a window activation.
        mFixture->Desktop().modalBoxes = true;
        frmRebate* form = OpenNew();
        FillRequired(form);
        form->txtFields(RebateField::ProductName)->setText("");
        FieldEdit* postage = Type(form, 6, "1..2");
        auto* tabs = form->findChild<QTabWidget*>("tbsTabs");
        if (how == "ok") {
            QTest::mouseClick(form->findChild<QPushButton*>("cmdOK"), Qt::LeftButton);
        } else if (how == "alt+o") {
            QTest::keyClick(postage, Qt::Key_O, Qt::AltModifier);
        } else if (how == "field") {
            QTest::mouseClick(form->txtFields(RebateField::AmountReceived), Qt::LeftButton);
        } else if (how == "tab") {
            QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {},
                              tabs->tabBar()->tabRect(2).center());
        } else if (how == "ctrl+tab") {
            QTest::keyClick(postage, Qt::Key_Tab, Qt::ControlModifier);
        } else if (how == "save") {
            form->mnuSaveRecord_Click(); // Product Name, on another page, is missing
        } else {
            QWidget other;
            other.show();
            QApplication::setActiveWindow(&other);
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        const auto& shown = mFixture->Desktop().boxes;
        QTRY_COMPARE(shown.size(), boxes);
        QCOMPARE(CountRebates(), 0);
        QCOMPARE(frmRebate::Instance(), form);
        QCOMPARE(CurrentTab(form), QString("Rebate Info"));
        QCOMPARE(postage->text(), QString("1..2"));
        if (boxes > 0) {
            QCOMPARE(shown.last().prompt, QString("Please enter a valid currency amount."));
            QTRY_VERIFY(postage->hasFocus());
        }
        QVERIFY(!QFile::exists(mFixture->LogPath()));
    }
    // The record check moves the focus into a field while its box is up, and the focus comes
    // back as the window's activation: that still enters the field, as a Tab would.
    void checkEntersField_data() {
        QTest::addColumn<int>("filled");    // the field whose text makes the check fail
        QTest::addColumn<QString>("text");  // its text
        QTest::addColumn<QString>("typed"); // then typed into the field with the focus, and Tab
        QTest::addColumn<QStringList>("prompts");
        QTest::addColumn<int>("checked"); // a field and its text at the end
        QTest::addColumn<QString>("expected");
        QTest::newRow("Amount Rec'd asks for the full amount")
            << 10 << "11/20/2026"
            << "" << QStringList{Must("an Amount Received"), "Did you receive the full amount?"}
            << 8 << "$10.00";
        QTest::newRow("Date Sent fills Date Due")
            << 6 << "1.00"
            << "11/01/2026" << QStringList{Must("a Date Sent")} << 9 << "12/27/2026";
    }
    void checkEntersField() {
        QFETCH(int, filled);
        QFETCH(QString, text);
        QFETCH(QString, typed);
        QFETCH(QStringList, prompts);
        QFETCH(int, checked);
        QFETCH(QString, expected);
        mFixture->Desktop().modalBoxes = true;
        frmRebate* form = OpenNew();
        FillRequired(form);
        form->txtFields(filled)->setText(text);
        FieldEdit* remarks = Enter(form, 17);
        QTest::keyClick(remarks, Qt::Key_O, Qt::AltModifier);
        QTRY_COMPARE(mFixture->Desktop().boxes.size(), prompts.size());
        QTRY_VERIFY(qobject_cast<FieldEdit*>(QApplication::focusWidget()) &&
                    QApplication::focusWidget() != remarks);
        if (!typed.isEmpty()) {
            QTest::keyClicks(QApplication::focusWidget(), typed);
            PressTab();
        }
        QStringList shown;
        for (const auto& box : mFixture->Desktop().boxes)
            shown << box.prompt;
        QCOMPARE(shown, prompts);
        QCOMPARE(form->txtFields(checked)->text(), expected);
        QCOMPARE(CountRebates(), 0);
    }
    void refusedSave_data() {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<bool>("viaOK");
        for (const char* cause : {"read-only", "locked"}) {
            QTest::addRow("%s, Save", cause) << cause << false;
            QTest::addRow("%s, OK", cause) << cause << true;
        }
    }
    // A save the store refuses leaves the form open with everything typed, logs the error, and a
    // later save goes through once the cause is gone.
    void refusedSave() {
        QFETCH(QString, cause);
        QFETCH(bool, viaOK);
        frmRebate* form = OpenNew();
        FillRequired(form);
        Type(form, 17, "keep this");

        std::unique_ptr<Database> other;
        QSqlQuery readOnly(gDatabase->Connection());
        if (cause == "read-only") {
            QVERIFY(readOnly.exec("PRAGMA query_only = 1"));
        } else {
            other = Database::Open(mFixture->DatabasePath());
            QVERIFY(QSqlQuery(other->Connection()).exec("BEGIN EXCLUSIVE"));
        }
        if (viaOK)
            form->cmdOK_Click();
        else
            form->mnuSaveRecord_Click();

        QCOMPARE(frmRebate::Instance(), form);
        QVERIFY(form->isVisible()); // shown again after OK hid it
        QCOMPARE(form->txtFields(RebateField::Remarks)->text(), QString("keep this"));
        QCOMPARE(form->txtFields(RebateField::ProductName)->text(), QString("Toaster"));
        QVERIFY(form->findChild<QPushButton*>("cmdOK")->isEnabled());
        auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].title, QString("Vantry! Vantry! Error"));
        const QString entry = mFixture->LogText();
        QVERIFY(entry.contains(viaOK ? "cmdOK_Click" : "mnuSaveRecord"));
        QVERIFY(entry.contains("frmRebate"));
        QCOMPARE(form->findChild<QLabel*>("lblStatus")->text(), QString("Ready..."));

        if (cause == "read-only")
            QVERIFY(readOnly.exec("PRAGMA query_only = 0"));
        else
            QVERIFY(QSqlQuery(other->Connection()).exec("ROLLBACK"));
        if (viaOK) {
            form->cmdOK_Click();
            QVERIFY(!frmRebate::Instance());
        } else {
            form->mnuSaveRecord_Click();
            QVERIFY(!form->RecordChanged());
        }
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(ReadRawRebate(gbRecordSaved ? gsSavedRebateID : form->RebateID())
                     .value("Remarks")
                     .toString(),
                 QString("keep this"));
        QCOMPARE(boxes.size(), 1);
    }
    void deleteRecord_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("emptyName");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<QVariant>("deleted");
        QTest::newRow("yes") << 6 << false << true << QVariant(qlonglong(1));
        QTest::newRow("no") << 7 << false << false << QVariant(qlonglong(0));
        QTest::newRow("yes, but a required field is empty")
            << 6 << true << false << QVariant(qlonglong(0));
    }
    void deleteRecord() {
        QFETCH(int, answer);
        QFETCH(bool, emptyName);
        QFETCH(bool, closed);
        QFETCH(QVariant, deleted);
        InsertRebates({StoredRow()});
        frmRebate* form = OpenExisting(kStored);
        if (emptyName)
            form->txtFields(RebateField::ProductName)->setText("");
        auto& desktop = mFixture->Desktop();
        desktop.SetNextAnswer(answer);
        mMain->tbToolBar_ButtonClick("Delete");
        QCOMPARE(desktop.Shown().first(),
                 QString("Delete Record? | 292 | Are you sure you want to delete the current "
                         "record?"));
        QCOMPARE(!frmRebate::Instance(), closed);
        QCOMPARE(ReadRawRebate(kStored).value("Deleted"), deleted);
        if (emptyName) {
            QCOMPARE(desktop.boxes[1].title, QString("Missing Product Name"));
            QVERIFY(form->chkFields(0)->isChecked());
            QVERIFY(!form->chkFields(0)->isVisible());
        }
    }
    void closingAsksNothing_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("Cancel") << "cmdCancel";
        QTest::newRow("Close without Saving") << "mnuCloseWOSave";
        QTest::newRow("close box") << "close";
    }
    void closingAsksNothing() {
        QFETCH(QString, how);
        InsertRebates({StoredRow()});
        frmRebate* form = OpenExisting(kStored);
        Type(form, 20, "Changed");
        if (how == "cmdCancel")
            QTest::mouseClick(form->findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
        else if (how == "close")
            form->parentWidget()->close(); // the child window's close box
        else
            MenuAction(form, how)->trigger();
        QVERIFY(!frmRebate::Instance());
        QVERIFY(!IsFormLoaded("frmRebate"));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
        QCOMPARE(ReadRawRebate(kStored).value("RebateName").toString(), QString("Router Rebate"));
        // The main toolbar's record buttons go with the form; Print and its separator stay.
        for (int index : {3, 6, 7, 8, 9, 10, 11})
            QVERIFY2(!ButtonVisible(index), qPrintable(QString::number(index)));
        QVERIFY(ButtonVisible(4) && ButtonVisible(5));
        QTRY_VERIFY(mMain->mdiArea->subWindowList().isEmpty());
    }
    void ctrlTabWraps_data() {
        QTest::addColumn<int>("start");
        QTest::addColumn<bool>("back");
        QTest::addColumn<QString>("expected");
        QTest::newRow("next") << 0 << false << "Rebate Info";
        QTest::newRow("last wraps to first") << 2 << false << "Product Info";
        QTest::newRow("previous") << 1 << true << "Product Info";
        QTest::newRow("first wraps to last") << 0 << true << "Followup Info";
    }
    void ctrlTabWraps() {
        QFETCH(int, start);
        QFETCH(bool, back);
        QFETCH(QString, expected);
        frmRebate* form = OpenNew();
        auto* tabs = form->findChild<QTabWidget*>("tbsTabs");
        tabs->setCurrentIndex(start);
        const int field = start == 0 ? 14 : start == 1 ? 20 : 11;
        Enter(form, field);
        if (back)
            QTest::keyClick(form->txtFields(field), Qt::Key_Backtab,
                            Qt::ControlModifier | Qt::ShiftModifier);
        else
            QTest::keyClick(form->txtFields(field), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(CurrentTab(form), expected);
    }
    void escapeOnRejectedBox() {
        frmRebate* form = OpenNew();
        QCheckBox* rejected = form->chkFields(21);
        Enter(form, 16);
        rejected->setFocus();
        QTRY_VERIFY(rejected->hasFocus());
        QTest::keyClick(rejected, Qt::Key_Escape);
        QVERIFY(rejected->isChecked());
        QVERIFY(form->RecordChanged());
        QTest::keyClick(rejected, Qt::Key_Escape);
        QVERIFY(!rejected->isChecked());
    }
    // Moving around the form: the tab order (each button after its field), the status line of
    // fields and buttons, and a click on a label, which moves into its field.
    void navigation() {
        frmRebate* form = OpenNew();
        auto* status = form->findChild<QLabel*>("lblStatus");
        Enter(form, 13);
        const QStringList order = {"cmdDial",      "txtFields_7", "cmdEditEmail",
                                   "txtFields_22", "cmdEditWeb",  "txtFields_4"};
        for (const QString& name : order) {
            PressTab();
            QCOMPARE(QApplication::focusWidget()->objectName(), name);
        }
        QCOMPARE(status->text(), QString("Rebate amount due..."));
        form->chkFields(21)->setFocus(Qt::TabFocusReason);
        QCOMPARE(status->text(), QString("Rejection status..."));
        form->findChild<QPushButton*>("cmdCancel")->setFocus(Qt::TabFocusReason);
        QCOMPARE(status->text(), QString("Close without saving...*"));

        form->txtFields(RebateField::LocationPurchased)->setText("Hardware Barn");
        Enter(form, 14);
        auto* label = form->findChild<QLabel*>("lblLabels_15");
        QTest::mouseClick(label, Qt::LeftButton);
        QTRY_VERIFY(form->txtFields(RebateField::LocationPurchased)->hasFocus());
        QCOMPARE(form->txtFields(RebateField::LocationPurchased)->selectedText(),
                 QString("Hardware Barn"));
        QCOMPARE(label->buddy(),
                 form->txtFields(
                     RebateField::LocationPurchased)); // the field's name for a screen reader
    }
    void positionKept() {
        SaveSetting(kAppTitle, "Settings", "RebateLeft", "1500");
        SaveSetting(kAppTitle, "Settings", "RebateTop", "750");
        frmRebate* form = OpenNew();
        QWidget* window = form->parentWidget();
        QCOMPARE(window->pos(), QPoint(100, 50));
        window->move(40, 20);
        form->Unload();
        QCOMPARE(GetSetting(kAppTitle, "Settings", "RebateLeft"), QString("600"));
        QCOMPARE(GetSetting(kAppTitle, "Settings", "RebateTop"), QString("300"));
        // A minimized form keeps what was stored before.
        form = OpenNew();
        form->parentWidget()->showMinimized();
        form->Unload();
        QCOMPARE(GetSetting(kAppTitle, "Settings", "RebateLeft"), QString("600"));
    }

private:
    void FillRequired(frmRebate* form) {
        Type(form, 20, "Spring Mail-In");
        Type(form, 14, "Toaster");
        Type(form, 2, "24.99");
        PressTab();
        Type(form, 4, "10");
        PressTab();
    }
    bool ButtonEnabled(int index) const { return mMain->tbToolBar->Buttons(index).Enabled(); }
    bool ButtonVisible(int index) const { return mMain->tbToolBar->Buttons(index).Visible(); }

    std::unique_ptr<MainWindowFixture> mFixture;
    frmMDI* mMain = nullptr;
};

QTEST_MAIN(tst_rebateform)
#include "tst_rebateform.moc"
