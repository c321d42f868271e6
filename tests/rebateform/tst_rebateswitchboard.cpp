#include "ListRows.h"
#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "common/core/Globals.h"
#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "switchboard/frmSwitchboard.h"

#include <QAbstractItemView>
#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

const QString kPending = "1", kUnsent = "2", kSecondUnsent = "3";

class tst_rebateswitchboard : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        RebateRow pending = RouterRow(kPending, "Router Rebate");
        pending.DateSent = QDate(2026, 11, 2);
        pending.DateDue = QDate(2026, 12, 28);
        mFixture = std::make_unique<MainWindowFixture>(QList<RebateRow>{
            pending, RouterRow(kUnsent, "Modem Rebate"), RouterRow(kSecondUnsent, "Cable Rebate")});
        mMain = mFixture->Main();
        mMain->resize(1100, 800);
        mBoard = &frmSwitchboard::Load();
        mMain->AddChild(mBoard)->show();
        QTRY_VERIFY(!mBoard->Timer1->isActive());
    }
    void cleanup() { mFixture.reset(); }
    // The page, the command, and the record the form opens on ("" for a new one).
    void opensForm_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("opened");
        for (const char* how : {"menu", "double click", "enter", "space"})
            QTest::addRow("New: %s", how) << "New" << how << "";
        for (const char* how : {"menu", "double click", "enter", "space"})
            QTest::addRow("Unsent: %s", how) << "Unsent" << how << kSecondUnsent;
    }
    void opensForm() {
        QFETCH(QString, tab);
        QFETCH(QString, how);
        QFETCH(QString, opened);
        SelectTab(tab);
        const bool create = tab == "New";
        ListView* lv = create ? mBoard->lvNew : mBoard->lvUnsent;
        QAbstractItemView* view = ViewOf(lv);
        if (create) {
            lv->ListItems().Item(1)->SetSelected(true);
            view->setFocus();
        } else {
            SelectIDs(lv, {kSecondUnsent});
        }
        if (how == "menu")
            (create ? mBoard->mnuNewRebate : mBoard->mnuEditRebate)->trigger();
        else if (how == "double click")
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, {},
                               view->visualRect(view->currentIndex()).center());
        else
            QTest::keyClick(view, how == "enter" ? Qt::Key_Return : Qt::Key_Space);
        frmRebate* form = frmRebate::Instance();
        QVERIFY(form);
        QCOMPARE(form->RebateID(), opened);
        QCOMPARE(mMain->mdiArea->activeSubWindow()->widget(), form);
    }
    // Open refuses more than one row; New and Open refuse while the form holds changes; a clean
    // form gives way without a word.
    void refusals() {
        SelectTab("Unsent");
        SelectIDs(mBoard->lvUnsent, {kUnsent, kSecondUnsent});
        QTest::keyClick(ViewOf(mBoard->lvUnsent), Qt::Key_Return);
        QCOMPARE(mFixture->Desktop().Shown(),
                 QStringList{"Invalid Action | 64 | You cannot open more than one rebate record at "
                             "a time."});
        QVERIFY(!frmRebate::Instance());

        SelectIDs(mBoard->lvUnsent, {kUnsent});
        mBoard->mnuEditRebate_Click();
        QPointer<frmRebate> form = frmRebate::Instance();
        QVERIFY(form);
        form->txtFields(RebateField::Remarks)->setText("changed");
        const QString refusal = "Unsaved Rebate | 0 | Please save the current rebate record before "
                                "attempting to ";
        for (const QString what : {"create a new record.", "edit another record."}) {
            ActivateBoard();
            SelectIDs(mBoard->lvUnsent, {kSecondUnsent});
            if (what.startsWith("create"))
                mBoard->mnuNewRebate_Click();
            else
                mBoard->OpenRebate();
            QCOMPARE(mFixture->Desktop().Shown().last(), refusal + what);
            QCOMPARE(frmRebate::Instance(), form.data());
            QCOMPARE(form->txtFields(RebateField::Remarks)->text(), QString("changed"));
            QCOMPARE(mMain->mdiArea->activeSubWindow()->widget(), form.data());
        }
        form->mnuSaveRecord_Click();
        ActivateBoard();
        SelectIDs(mBoard->lvUnsent, {kSecondUnsent});
        mBoard->OpenRebate();
        QCOMPARE(mFixture->Desktop().boxes.size(), 3);
        QCOMPARE(frmRebate::Instance()->RebateID(), kSecondUnsent);
    }
    // OK brings the Switchboard up to date at once: the paid record moves to Paid, selected.
    void pendingBecomesPaid() {
        SelectTab("Pending");
        SelectIDs(mBoard->lvPending, {kPending});
        mBoard->mnuEditRebate_Click();
        frmRebate* form = frmRebate::Instance();
        QVERIFY(form);
        form->txtFields(RebateField::DateReceived)->setText("11/20/2026");
        form->txtFields(RebateField::AmountReceived)->setText("$30.00");
        QTest::mouseClick(form->findChild<QPushButton*>("cmdOK"), Qt::LeftButton);
        QVERIFY(!frmRebate::Instance());
        QCOMPARE(mBoard->tbsSwitch->SelectedItem()->Caption(), QString("Paid"));
        QCOMPARE(ListedIDs(mBoard->lvPaid), QStringList{kPending});
        QCOMPARE(ListedIDs(mBoard->lvPaid, true), QStringList{kPending});
        QCOMPARE(mBoard->lvPending->ListItems().Count(), 0);
        QCOMPARE(ReadRawRebate(kPending).value("AmountReceived").toLongLong(), 300000);
    }

    // OK on a record of All, twice: each time the keyboard is back on the list, on the saved row
    // alone, so Enter opens it again; the row saved before never comes back selected.
    void savedRowKeepsTheKeyboard() {
        SelectTab("All");
        ListView* all = mBoard->lvAll;
        for (const QString& id : {kUnsent, kSecondUnsent}) {
            SelectIDs(all, {id});
            QTest::keyClick(ViewOf(all), Qt::Key_Return);
            frmRebate* form = frmRebate::Instance();
            QVERIFY(form);
            QCOMPARE(form->RebateID(), id);
            QTest::keyClick(RebateFormDriver::Type(form, 17, "ok"), Qt::Key_O, Qt::AltModifier);
            QTRY_VERIFY(!frmRebate::Instance());
            QTRY_COMPARE(QApplication::focusWidget(), ViewOf(all));
            QCOMPARE(ListedIDs(all, true), QStringList{id});
            QVERIFY(!gbRecordSaved);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(frmRebate::Instance());
        QCOMPARE(frmRebate::Instance()->RebateID(), kSecondUnsent);
    }

private:
    void ActivateBoard() {
        mMain->mdiArea->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(mBoard->parentWidget()));
    }
    void SelectTab(const QString& caption) {
        mBoard->tbsSwitch->Tabs().Item(caption)->SetSelected(true);
    }
    QAbstractItemView* ViewOf(ListView* lv) {
        return qobject_cast<QAbstractItemView*>(lv->ActiveView());
    }

    std::unique_ptr<MainWindowFixture> mFixture;
    frmMDI* mMain = nullptr;
    frmSwitchboard* mBoard = nullptr;
};

QTEST_MAIN(tst_rebateswitchboard)
#include "tst_rebateswitchboard.moc"
