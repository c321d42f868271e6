#include "DataRows.h"
#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "common/core/Clock.h"
#include "common/ui/Forms.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"

#include <QMdiArea>
#include <QSqlQuery>

using namespace RebateFormDriver;

namespace {
const QString kStored = "1";
const QString kNewKey = "20261123100000"; // the fixed clock's time

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

// Field texts as "index=text|index=text".
void SetFields(frmRebate* form, const QString& fields) {
    for (const QString& field : fields.split('|', Qt::SkipEmptyParts))
        form->txtFields(field.section('=', 0, 0).toInt())->setText(field.section('=', 1));
}

// Rows named by their only value, in the column "how".
void AddNames(std::initializer_list<const char*> names) {
    QTest::addColumn<QString>("how");
    for (const char* name : names)
        QTest::newRow(name) << QString(name);
}

const struct State {
    const char *name, *how;
    bool save, print, remove;
    const char* caption;
} kStates[] = {
    {"new, untouched", "new", false, false, false, "New Record"},
    {"new, edited", "new+type", true, false, false, "Spring Mail-In"},
    {"saved, clean", "new+save", false, true, true, "Spring Mail-In"},
    {"opened", "open", false, true, true, "Router Rebate"},
    {"opened, edited", "open+check", true, true, true, "Router Rebate"},
};

// The field texts over a record holding the four always-required fields, the page on top (0
// Product Info, 1 Rebate Info, 2 Followup Info), then what the check says: "" passes, "!Field"
// is the dates check on Field, else the missing field; the page after and the field that gets
// the focus.
const struct Check {
    const char *name, *fields;
    int start;
    const char* missing;
    int tab, focus;
} kChecks[] = {
    {"1 rebate name", "20=", 0, "a Rebate Name", 1, 20},
    {"2 product name", "14=", 1, "a Product Name", 0, 14},
    {"3 purchase price", "2=", 2, "a Purchase Price", 0, 2},
    {"4 rebate amount", "4=", 0, "a Rebate Amount", 1, 4},
    {"5 date due", "5=11/10/2026|9=", 0, "a Date Due", 1, 9},
    {"6 date sent", "9=12/1/2026", 0, "a Date Sent", 1, 5},
    {"7 postage without date sent", "6=$0.32", 1, "a Date Sent", 1, 5},
    {"8 amount without date", "8=$10.00", 2, "a Date Received", 1, 10},
    {"8 zero amount passes", "8=$0.00", 1, "", 1, -1},
    {"9 date without amount", "10=11/20/2026", 1, "an Amount Received", 1, 8},
    {"10 followup postage", "12=$0.32", 0, "a Followup Date", 2, 11},
    {"11 before sent", "5=11/10/2026|9=1/5/2027|10=11/9/2026|8=$10.00", 1, "!Date Received", 1, 10},
    {"11 same day passes", "5=11/10/2026|9=1/5/2027|10=11/10/2026|8=$10.00", 1, "", 1, -1},
    {"12 due before sent", "5=11/10/2026|9=11/09/2026", 1, "!Date Due", 1, 9},
    {"13 followup before sent", "5=11/10/2026|9=1/5/2027|11=11/1/2026", 0, "!Followup Date", 2, 11},
    {"rejected box never required", "16=Missing receipt", 2, "", 2, -1},
};

// A field's text on the stored record, then saved through the form; the column and the raw
// value the row holds afterwards: money in ten-thousandths, Null as a null QVariant.
const struct Written {
    const char *name, *fields, *column;
    QVariant stored;
} kWritten[] = {
    {"large money exact", "3=$123456.78", "CouponAmount", qlonglong(1234567800)},
    {"empty coupon is zero", "3=", "CouponAmount", qlonglong(0)},
    {"email cleared is Null", "7=", "Email", QVariant()},
    {"address cleared stays text", "0=", "Address", ""},
    {"postage cleared keeps the old value", "6=", "PostagePrice", qlonglong(5000)},
    {"followup postage is the default", "11=11/20/2026|12=$1.00", "FollowupPostage",
     qlonglong(3200)},
    {"followup date cleared, postage zero", "11=", "FollowupPostage", qlonglong(0)},
    {"phone as it stands", "13=(800) FLOWERS", "PhoneNumber", "(800) FLOWERS"},
    {"date", "10=11/20/2026|8=$30.00", "DateReceived", "2026-11-20"},
};
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

    void states_data() { AddRows(kStates); }
    void states() {
        const State& s = Row(kStates);
        const QString how = s.how;
        InsertRebates({StoredRow()});
        frmRebate* form = how.startsWith("open") ? OpenExisting(kStored) : OpenNew();
        if (how.contains("type") || how.contains("save"))
            FillRequired(form);
        if (how.contains("save"))
            form->mnuSaveRecord_Click();
        if (how.contains("check"))
            Enter(form, 16), form->chkFields(21)->click();

        // OK, Save, Save and Close and the toolbar's Save; Print twice; Delete twice.
        QCOMPARE((QList<bool>{form->findChild<QPushButton*>("cmdOK")->isEnabled(),
                              form->findChild<QAction*>("mnuSaveRecord")->isEnabled(),
                              form->findChild<QAction*>("mnuSaveRecordAndCloseForm")->isEnabled(),
                              ButtonEnabled(3), form->RecordChanged(),
                              form->findChild<QAction*>("mnuPrint")->isEnabled(), ButtonEnabled(4),
                              form->findChild<QPushButton*>("cmdDelete")->isEnabled(),
                              ButtonEnabled(6)}),
                 QList<bool>(5, s.save) + QList<bool>(2, s.print) + QList<bool>(2, s.remove));
        if (!s.print) { // the main window's Print on a record never saved explains instead
            form->Print();
            QCOMPARE(mFixture->Desktop().Shown(),
                     QStringList{"Unsaved Record | 64 | The current record has not been saved to "
                                 "the database. Please save the record before trying to print."});
        }
        QCOMPARE(form->windowTitle(), QString("Rebate Form - [%1]").arg(s.caption));
        // The record buttons of the main toolbar show while the form is the active child.
        QVERIFY(ButtonVisible(3) && ButtonVisible(6) && ButtonVisible(8));
        // Untouched, the form starts in its first field, whose status text shows.
        if (how == "new" || how == "open") {
            QCOMPARE(QApplication::focusWidget(), form->txtFields(RebateField::ProductName));
            QCOMPARE(form->findChild<QLabel*>("lblStatus")->text(),
                     QString("Name of product purchased..."));
        }
    }
    void validateRecord_data() { AddRows(kChecks); }
    void validateRecord() {
        const Check& c = Row(kChecks);
        frmRebate* form = OpenNew();
        SetFields(form, "20=Spring Mail-In|14=Toaster|2=$24.99|4=$10.00");
        SetFields(form, c.fields);
        auto* tabs = form->findChild<QTabWidget*>("tbsTabs");
        tabs->setCurrentIndex(c.start);
        tabs->setFocus();
        auto& desktop = mFixture->Desktop();
        form->mnuSaveRecord_Click(); // the toolbar's Save: no focus move first
        const QString missing = c.missing;
        if (missing.isEmpty()) {
            QVERIFY(desktop.boxes.isEmpty());
            QCOMPARE(CountRebates(), 1);
            QCOMPARE(form->RebateID(), kNewKey);
            return;
        }
        // The focus arriving in Amount Rec'd asks its question, as whenever it arrives there.
        QCOMPARE(desktop.boxes.size(), c.focus == 8 ? 2 : 1);
        if (c.focus == 8)
            QCOMPARE(desktop.boxes[1].title, QString("Amount Received"));
        QCOMPARE(desktop.Shown().first(), missing.startsWith('!')
                                              ? "Dates Invalid | 48 | " + missing.mid(1) +
                                                    " must be greater than the Date Sent."
                                              : "Missing " + missing.section(' ', 1) +
                                                    " | 48 | You must enter " + missing +
                                                    " before saving the record.");
        QCOMPARE(desktop.beeps, 1);
        QCOMPARE(CurrentTab(form), tabs->tabText(c.tab));
        QTRY_COMPARE(QApplication::focusWidget(), form->txtFields(c.focus));
        QCOMPARE(CountRebates(), 0);
        QVERIFY(form->RebateID().isEmpty());
        QVERIFY(!QFile::exists(mFixture->LogPath()));
    }
    // A new record takes the clock's time as its key, or the next free second; saved again, it
    // keeps the key.
    void newRecordSavedOnceAndAgain() {
        InsertRebates({StoredRow(kNewKey), StoredRow("20261123100001")});
        frmRebate* form = OpenNew();
        FillRequired(form);
        form->mnuSaveRecord_Click();
        QCOMPARE(form->RebateID(), QString("20261123100002"));

        Clock::Advance(90);
        Type(form, 20, "Spring Mail-In, corrected");
        mMain->tbToolBar_ButtonClick("Save"); // the main toolbar reaches the form
        QVERIFY(!form->RecordChanged());
        QCOMPARE(CountRebates(), 3);
        QCOMPARE(ReadRawRebate("20261123100002").value("RebateName").toString(),
                 QString("Spring Mail-In, corrected"));
        QCOMPARE(ReadRawRebate(kNewKey).value("RebateName").toString(), QString("Router Rebate"));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }
    void writtenValues_data() { AddRows(kWritten); }
    void writtenValues() {
        const Written& w = Row(kWritten);
        InsertRebates({StoredRow()});
        frmRebate* form = OpenExisting(kStored);
        SetFields(form, w.fields);
        form->mnuSaveRecord_Click();
        QVERIFY2(mFixture->Desktop().boxes.isEmpty(),
                 qPrintable(mFixture->Desktop().boxes.value(0).prompt));
        const QVariant raw = ReadRawRebate(kStored).value(w.column);
        QCOMPARE(raw.isNull(), w.stored.isNull());
        if (!w.stored.isNull())
            QCOMPARE(raw, w.stored);
    }
    // Money that isn't an amount in Postage Price, then a way out of the field: each checks the
    // field first, which refuses, so the focus, the page and the table stay as they were.
    void vetoedField_data() { AddNames({"Alt+O", "Save"}); }
    void vetoedField() {
        QFETCH(QString, how);
        // Each box takes the focus away as on a desktop; it comes back as a window activation.
        mFixture->Desktop().modalBoxes = true;
        frmRebate* form = OpenNew();
        FillRequired(form);
        form->txtFields(RebateField::ProductName)->setText("");
        FieldEdit* postage = Type(form, 6, "1..2");
        if (how == "Alt+O")
            QTest::keyClick(postage, Qt::Key_O, Qt::AltModifier);
        else
            form->mnuSaveRecord_Click(); // Product Name, on another page, is missing: a second box
        const auto& shown = mFixture->Desktop().boxes;
        QTRY_COMPARE(shown.size(), how == "Save" ? 2 : 1);
        QCOMPARE(CountRebates(), 0);
        QCOMPARE(frmRebate::Instance(), form);
        QCOMPARE(CurrentTab(form), QString("Rebate Info"));
        QCOMPARE(postage->text(), QString("1..2"));
        QCOMPARE(shown.last().prompt, QString("Please enter a valid currency amount."));
        QTRY_VERIFY(postage->hasFocus());
    }
    // A save the store refuses leaves the form open with everything typed, logs the error, and a
    // later save goes through once the cause is gone: read-only through Save, locked through OK.
    void refusedSave_data() { AddNames({"read-only", "locked"}); }
    void refusedSave() {
        QFETCH(QString, how);
        const bool viaOK = how == "locked";
        frmRebate* form = OpenNew();
        FillRequired(form);
        Type(form, 17, "keep this");
        std::unique_ptr<Database> other;
        QSqlQuery query(gDatabase->Connection());
        if (how == "locked") {
            other = Database::Open(mFixture->DatabasePath());
            query = QSqlQuery(other->Connection());
        }
        QVERIFY(query.exec(how == "locked" ? "BEGIN EXCLUSIVE" : "PRAGMA query_only = 1"));
        const auto save = [&] {
            viaOK ? form->cmdOK_Click() : form->mnuSaveRecord_Click();
        };
        save();

        QCOMPARE(frmRebate::Instance(), form);
        QVERIFY(form->isVisible()); // shown again after OK hid it
        QCOMPARE(form->txtFields(RebateField::Remarks)->text(), QString("keep this"));
        auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].title, QString("Vantry! Vantry! Error"));
        QVERIFY(mFixture->LogText().contains("frmRebate"));
        QCOMPARE(form->findChild<QLabel*>("lblStatus")->text(), QString("Ready..."));

        QVERIFY(query.exec(how == "locked" ? "ROLLBACK" : "PRAGMA query_only = 0"));
        save();
        if (viaOK)
            QVERIFY(!frmRebate::Instance());
        else
            QVERIFY(!form->RecordChanged());
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(ReadRawRebate(kNewKey).value("Remarks").toString(), QString("keep this"));
        QCOMPARE(boxes.size(), 1);
    }
    // Yes, No, and Yes while a required field is empty.
    void deleteRecord_data() { AddNames({"yes", "no", "yes, no product name"}); }
    void deleteRecord() {
        QFETCH(QString, how);
        const int answer = how == "no" ? 7 : 6;
        const bool emptyName = how.endsWith("name");
        const bool deleted = how == "yes";
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
        QCOMPARE(!frmRebate::Instance(), deleted);
        QCOMPARE(ReadRawRebate(kStored).value("Deleted"), QVariant(qlonglong(deleted)));
        if (emptyName)
            QCOMPARE(desktop.boxes[1].title, QString("Missing Product Name"));
    }
    void closingAsksNothing_data() { AddNames({"cmdCancel", "close"}); }
    void closingAsksNothing() {
        QFETCH(QString, how);
        InsertRebates({StoredRow()});
        frmRebate* form = OpenExisting(kStored);
        Type(form, 20, "Changed");
        if (how == "cmdCancel")
            QTest::mouseClick(form->findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
        else
            form->parentWidget()->close(); // the child window's close box
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
    // Moving around the form: the tab order (each button after its field), the status line of
    // fields and buttons, and Ctrl+Tab from the last page and Ctrl+Shift+Tab from the first
    // wrapping around.
    void navigation() {
        frmRebate* form = OpenNew();
        auto* status = form->findChild<QLabel*>("lblStatus");
        Enter(form, 13);
        for (const char* name : {"cmdDial", "txtFields_7", "cmdEditEmail", "txtFields_22",
                                 "cmdEditWeb", "txtFields_4"}) {
            PressTab();
            QCOMPARE(QApplication::focusWidget()->objectName(), QString(name));
        }
        QCOMPARE(status->text(), QString("Rebate amount due..."));
        form->findChild<QPushButton*>("cmdCancel")->setFocus(Qt::TabFocusReason);
        QCOMPARE(status->text(), QString("Close without saving...*"));

        QTest::keyClick(Enter(form, 11), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(CurrentTab(form), QString("Product Info"));
        QTest::keyClick(Enter(form, 14), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(CurrentTab(form), QString("Followup Info"));
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
