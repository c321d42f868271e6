#include "MainWindowFixture.h"
#include "Modal.h"
#include "RebateFormDriver.h"
#include "common/core/Globals.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "tools/frmAutoDial.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace RebateFormDriver;

namespace {
// A data table of rows with a name: the test reads its row by index.
template <class T, size_t N> void AddRows(const T (&rows)[N]) {
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < N; ++i)
        QTest::newRow(rows[i].name) << int(i);
}
template <class T, size_t N> const T& Row(const T (&rows)[N]) {
    QFETCH(int, row);
    return rows[row];
}

// The field, its text, the keys inside the calendar, the field afterwards.
const struct Calendar {
    const char* name;
    int index;
    const char* before;
    QList<Qt::Key> keys;
    const char* after;
} kCalendar[] = {
    {"empty field starts on today", 19, "", {Qt::Key_Right, Qt::Key_Return}, "11/24/2026"},
    {"from the field's date", 1, "3/5/2026", {Qt::Key_PageDown, Qt::Key_Return}, "04/05/2026"},
    {"escape leaves the field", 5, "3/5/2026", {Qt::Key_Right, Qt::Key_Escape}, "3/5/2026"},
};

// Rebate Amount typed, the calculator's keys and button, the field after leaving it, the box.
const struct Calculator {
    const char *name, *typed, *keys, *button, *after, *box;
} kCalculator[] = {
    {"seeded, added, checked on leaving", "12.50", "+1=", "cmdOK", "$13.50", ""},
    {"beyond money: the field refuses", "900000000000000", "*10=", "cmdOK", "9000000000000000",
     "Invalid Amount"},
    {"Close leaves the field", "7", "+1=", "cmdCancel", "$7.00", ""},
};

// "w" in the field, over a Date Sent: whether the weeks are asked, Date Due afterwards.
const struct Weeks {
    const char* name;
    int index;
    const char *sent, *answer;
    bool asked;
    const char* due;
} kWeeks[] = {
    {"six weeks", 9, "12/01/2025", "6", true, "1/12/2026"},
    {"cancel keeps the date", 9, "12/01/2025", "", true, "1/26/2026"},
    {"no date sent", 9, "", "6", false, ""},
};

// Undo, cut, copy and paste: the steps are typed text, a key ({Esc} {^Z} {Home} {End}) or a
// toolbar button ({Cut} {Copy} {Paste:text}); the field, the clipboard and the box afterwards.
// The undo is one step: a second undo brings the typing back. Ctrl+Z arrives as a control
// character, which date and money fields refuse.
const struct Edit {
    const char* name;
    int index;
    const char *before, *steps, *after, *clipboard, *box;
} kEdits[] = {
    {"escape undoes the typing", 15, "Old", "New|{Esc}", "Old", "stale", ""},
    {"a second escape brings it back", 15, "Old", "New|{Esc}|{Esc}", "New", "stale", ""},
    {"escape undoes in a date", 5, "1", "{End}|23|{Esc}", "1", "stale", ""},
    {"Ctrl+Z undoes text", 20, "1", "{End}|23|{^Z}", "1", "stale", ""},
    {"Ctrl+Z refused in a date", 5, "1", "{End}|23|{^Z}", "123", "stale", ""},
    {"nothing to undo after a shortcut", 1, "", "t|{Esc}", "11/23/2026", "stale", ""},
    {"copy the selection", 15, "Toaster", "{Copy}", "Toaster", "Toaster", ""},
    {"copy without a selection empties the clipboard", 15, "Toaster", "{End}|{Copy}", "Toaster", "",
     ""},
    {"cut the selection, then undo", 15, "Toaster", "{Cut}|{Esc}", "Toaster", "Toaster", ""},
    {"cut without a selection deletes at the caret", 15, "Toaster", "{Home}|{Cut}", "oaster", "",
     ""},
    {"paste a bad date: refused at once, kept", 5, "", "{Paste:13/45}", "13/45", "13/45",
     "Invalid Date"},
    {"paste a date: rewritten at once", 5, "", "{Paste:3/5/26}", "03/05/2026", "3/5/26", ""},
    {"paste letters into a phone number", 13, "", "{Paste:1-800-FLOWERS}", "1-800-FLOWERS",
     "1-800-FLOWERS", ""},
    {"a date shortcut past 12/31/9999 is refused", 9, "12/31/9999", "+", "12/31/9999", "stale",
     "Invalid Date"},
    {"paste, then undo", 15, "Toaster", "{End}|{Paste: Deluxe}|{Esc}", "Toaster", " Deluxe", ""},
};
} // namespace

// The rebate form's side of the entry tools, the contact links, undo and the clipboard, in the
// main window. The tools run as real modal windows; the focus must come back to the field or
// button that opened them.
class tst_entrytools : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<MainWindowFixture>();
        mMain = mFixture->Main();
        mForm = OpenNew();
    }
    void cleanup() { mFixture.reset(); }

    void calendar_data() { AddRows(kCalendar); }
    void calendar() {
        const Calendar& c = Row(kCalendar);
        mForm->txtFields(c.index)->setText(c.before);
        FieldEdit* field = Enter(mForm, c.index);
        WhileModal("frmCalendar", &mOpened, [&](QWidget*) {
            for (Qt::Key key : c.keys)
                QTest::keyClick(QApplication::focusWidget(), key);
        });
        QTest::keyClick(field, 'c');
        QVERIFY(mOpened);
        QCOMPARE(field->text(), QString(c.after));
        QTRY_COMPARE(QApplication::focusWidget(), field);
    }

    // The calculator types its result into the money field as keys; the field's check on
    // leaving decides.
    void calculator_data() { AddRows(kCalculator); }
    void calculator() {
        const Calculator& c = Row(kCalculator);
        FieldEdit* field = Type(mForm, 4, c.typed);
        WhileModal("frmCalculator", &mOpened, [&](QWidget* dialog) {
            QTest::keyClicks(QApplication::focusWidget(), c.keys);
            QTest::mouseClick(dialog->findChild<QPushButton*>(c.button), Qt::LeftButton);
        });
        QTest::keyClick(field, 'c');
        QVERIFY(mOpened);
        QTRY_COMPARE(QApplication::focusWidget(), field);
        PressTab();
        QCOMPARE(field->text(), QString(c.after));
        QCOMPARE(LastBox(), QString(c.box));
        // A refused amount keeps the focus in the field.
        QCOMPARE(QApplication::focusWidget() == field, *c.box != 0);
    }

    void weekConverter_data() { AddRows(kWeeks); }
    void weekConverter() {
        const Weeks& w = Row(kWeeks);
        Type(mForm, 5, w.sent);
        PressTab(); // Date Due fills with 56 days on
        mFixture->Desktop().SetNextInput(w.answer);
        QTest::keyClick(Enter(mForm, w.index), 'w');
        QCOMPARE(mFixture->Desktop().inputPrompts.size(), w.asked ? 1 : 0);
        QCOMPARE(mForm->txtFields(RebateField::DateDue)->text(), QString(w.due));
    }

    // Alt+Z opens the field's text in the zoom box and the edit comes back.
    void zoom() {
        mForm->txtFields(RebateField::Remarks)->setText("Mailed");
        FieldEdit* field = Enter(mForm, 17);
        WhileModal("frmZoomBox", &mOpened, [&](QWidget* dialog) {
            QTest::keyClicks(dialog->findChild<QPlainTextEdit*>("txtText"), " in May");
            QTest::mouseClick(dialog->findChild<QPushButton*>("btnOK"), Qt::LeftButton);
        });
        QTest::keyClick(field, Qt::Key_Z, Qt::AltModifier);
        QVERIFY(mOpened);
        QCOMPARE(field->text(), QString("Mailed in May"));
        QTRY_COMPARE(QApplication::focusWidget(), field);
    }

    // The phone button: a number with digits opens the dialer, letters as they stand, and dials
    // it for the rebate's name; one without digits gives the box.
    void dial_data() {
        QTest::addColumn<QString>("phone");
        QTest::addColumn<QString>("box");
        QTest::newRow("letters go as they stand") << QString("1-800-FLOWERS") << QString();
        QTest::newRow("punctuation only") << QString("(--)") << QString("Invalid Telephone Number");
    }
    void dial() {
        QFETCH(QString, phone);
        QFETCH(QString, box);
        const QString name = "Acme";
        mForm->txtFields(RebateField::PhoneNumber)->setText(phone);
        mForm->txtFields(RebateField::RebateName)->setText(name);
        Enter(mForm, 13);
        auto* cmdDial = mForm->findChild<QPushButton*>("cmdDial");
        cmdDial->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(cmdDial->hasFocus());
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QCOMPARE(dial.txtNumber->text(), phone);
            QCOMPARE(dial.txtName->text(), name);
            QTest::mouseClick(dial.findChild<QPushButton*>("cmdDial"), Qt::LeftButton);
        });
        QTest::keyClick(cmdDial, Qt::Key_Space);
        QCOMPARE(mOpened, box.isEmpty());
        QCOMPARE(mFixture->Desktop().dialed,
                 box.isEmpty() ? QStringList{phone + "|AutoDial|Acme|"} : QStringList());
        QCOMPARE(LastBox(), box);
        QWidget* focus = box.isEmpty() ? static_cast<QWidget*>(cmdDial)
                                       : mForm->txtFields(RebateField::PhoneNumber);
        QTRY_COMPARE(QApplication::focusWidget(), focus);
    }

    // The main toolbar's Dialer opens the dialer without a number.
    void toolbarDialer() {
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QVERIFY(dial.txtNumber->text().isEmpty());
            QVERIFY(!dial.lblName->isVisible());
            QVERIFY(!dial.findChild<QPushButton*>("cmdDial")->isEnabled());
        });
        mMain->tbToolBar_ButtonClick("Dialer");
        QVERIFY(mOpened);
    }

    // What a click on a link field opens.
    void links_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("opened");
        QTest::newRow("web") << 22 << "www.example.com"
                             << "http://www.example.com";
        QTest::newRow("https gets the http prefix") << 22 << "https://example.com"
                                                    << "http://https://example.com";
        QTest::newRow("email") << 7 << "rebates@example.com"
                               << "mailto:rebates@example.com";
        QTest::newRow("email with its prefix") << 7 << "MailTo:a@example.com"
                                               << "MailTo:a@example.com";
        QTest::newRow("empty opens nothing") << 7 << ""
                                             << "";
    }
    void links() {
        QFETCH(int, index);
        QFETCH(QString, text);
        QFETCH(QString, opened);
        mForm->txtFields(index)->setText(text);
        QTest::mouseClick(Enter(mForm, index), Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments.join(QString()), opened);
    }

    void editCommands_data() { AddRows(kEdits); }
    void editCommands() {
        const Edit& e = Row(kEdits);
        QApplication::clipboard()->setText("stale");
        mForm->txtFields(e.index)->setText(e.before);
        FieldEdit* field = Enter(mForm, e.index);
        const QMap<QString, QKeyCombination> keys{{"{Esc}", Qt::Key_Escape},
                                                  {"{^Z}", Qt::CTRL | Qt::Key_Z},
                                                  {"{Home}", Qt::Key_Home},
                                                  {"{End}", Qt::Key_End}};
        for (const QString& step : QString(e.steps).split('|')) {
            if (keys.contains(step)) {
                QTest::keyClick(field, keys[step].key(), keys[step].keyboardModifiers());
            } else if (step.startsWith('{')) {
                const QString button = step.mid(1).chopped(1);
                if (button.startsWith("Paste:"))
                    QApplication::clipboard()->setText(button.mid(6));
                mMain->tbToolBar_ButtonClick(button.section(':', 0, 0));
            } else {
                QTest::keyClicks(field, step);
            }
        }
        QCOMPARE(field->text(), QString(e.after));
        QCOMPARE(QApplication::clipboard()->text(), QString(e.clipboard));
        QCOMPARE(LastBox(), QString(e.box));
        QCOMPARE(QApplication::focusWidget(), field);
    }

private:
    // The title of the last box shown, "" for none.
    QString LastBox() const {
        const auto& boxes = mFixture->Desktop().boxes;
        return boxes.isEmpty() ? QString() : boxes.last().title;
    }

    std::unique_ptr<MainWindowFixture> mFixture;
    frmMDI* mMain = nullptr;
    frmRebate* mForm = nullptr;
    bool mOpened = false;
};

QTEST_MAIN(tst_entrytools)
#include "tst_entrytools.moc"
