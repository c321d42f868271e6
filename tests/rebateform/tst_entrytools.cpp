#include "DataRows.h"
#include "MainWindowFixture.h"
#include "Modal.h"
#include "RebateFormDriver.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "tools/frmAutoDial.h"

#include <QApplication>
#include <QClipboard>
#include <QKeySequence>
#include <QPushButton>
#include <QTest>

using namespace RebateFormDriver;

namespace {
// The field and its text, the tool's window, what is typed in it ({Key} or text) and the
// button that closes it; the field after leaving it and the box.
const struct Tool {
    const char* name;
    int index;
    const char *before, *tool, *keys, *button, *after, *box;
} kTools[] = {
    {"calendar: empty is today", 19, "", "frmCalendar", "{Right}|{Return}", "", "11/24/2026", ""},
    {"calendar: field", 1, "3/5/2026", "frmCalendar", "{PgDown}|{Return}", "", "04/05/2026", ""},
    {"calculator: seeded, added", 4, "12.50", "frmCalculator", "+1=", "cmdOK", "$13.50", ""},
    {"calculator: beyond money", 4, "900000000000000", "frmCalculator", "*10=", "cmdOK",
     "9000000000000000", "Invalid Amount"},
    {"zoom: edit kept", 17, "Mailed", "frmZoomBox", " in May", "btnOK", "Mailed in May", ""},
    {"zoom: Cancel", 17, "Mailed", "frmZoomBox", "xyz", "btnCancel", "Mailed", ""},
};

// "w" in Date Due over a Date Sent: the answer, Date Due afterwards (56 days on is the default)
// and the box's text.
const char* const kNotWeeks = "Please enter a number such as 6 or 8.";
const struct Weeks {
    const char *name, *sent, *answer, *due, *box;
} kWeeks[] = {
    {"six weeks", "12/01/2025", "6", "1/12/2026", ""},
    {"half days round to even", "12/01/2025", "1.5", "12/11/2025", ""},
    {"cancel keeps the date", "12/01/2025", "", "1/26/2026", ""},
    {"too many days", "12/01/2025", "5000", "1/26/2026", kNotWeeks},
    {"past the year 9999", "11/01/9999", "9", "12/27/9999", kNotWeeks},
    {"no date sent", "", "6", "", ""},
};

// What a click on a link field opens.
const struct Link {
    const char* name;
    int index;
    const char *text, *opened;
} kLinks[] = {
    {"web", 22, "www.example.com", "http://www.example.com"},
    {"email", 7, "rebates@example.com", "mailto:rebates@example.com"},
    {"empty opens nothing", 7, "", ""},
};

// Undo, cut, copy and paste: the steps are typed text, a key ({Esc}) or a toolbar button ([Cut]
// [Copy] [Paste:text]); the field, the clipboard and the box afterwards.
// The undo is one step: a second undo brings the typing back. Ctrl+Z arrives as a control
// character, which date and money fields refuse.
const struct Edit {
    const char* name;
    int index;
    const char *before, *steps, *after, *clipboard, *box;
} kEdits[] = {
    {"escape undoes the typing", 15, "Old", "New|{Esc}", "Old", "stale", ""},
    {"a second escape brings it back", 15, "Old", "New|{Esc}|{Esc}", "New", "stale", ""},
    {"Ctrl+Z refused in a date", 5, "1", "{End}|23|{Ctrl+Z}", "123", "stale", ""},
    {"nothing to undo after a shortcut", 1, "", "t|{Esc}", "11/23/2026", "stale", ""},
    {"copy the selection", 15, "Toaster", "[Copy]", "Toaster", "Toaster", ""},
    {"cut at the caret", 15, "Toaster", "{Home}|[Cut]", "oaster", "", ""},
    {"paste a bad date: kept", 5, "", "[Paste:13/45]", "13/45", "13/45", "Invalid Date"},
    {"paste a date: rewritten", 5, "", "[Paste:3/5/26]", "03/05/2026", "3/5/26", ""},
    {"shortcut past 12/31/9999", 9, "12/31/9999", "+", "12/31/9999", "stale", "Invalid Date"},
};
} // namespace

// The rebate form's side of the entry tools, the contact links, undo and the clipboard. The tools
// run as real modal windows; the focus must come back to the field that opened them.
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

    // Each tool as a real modal window over the field (c opens the calendar and the calculator,
    // Alt+Z the zoom box); the field's check on leaving decides what it handed back.
    void tools_data() { AddRows(kTools); }
    void tools() {
        const Tool& t = Row(kTools);
        mForm->txtFields(t.index)->setText(t.before);
        FieldEdit* field = Enter(mForm, t.index);
        WhileModal(t.tool, &mOpened, [&](QWidget* dialog) {
            for (const QString& step : QString(t.keys).split('|')) {
                if (!step.startsWith('{'))
                    QTest::keyClicks(QApplication::focusWidget(), step);
                else
                    QTest::keyClick(QApplication::focusWidget(),
                                    QKeySequence(step.mid(1).chopped(1))[0].key());
            }
            if (*t.button)
                QTest::mouseClick(dialog->findChild<QPushButton*>(t.button), Qt::LeftButton);
        });
        if (QString(t.tool) == "frmZoomBox")
            QTest::keyClick(field, Qt::Key_Z, Qt::AltModifier);
        else
            QTest::keyClick(field, 'c');
        QVERIFY(mOpened);
        QTRY_COMPARE(QApplication::focusWidget(), field);
        PressTab();
        QCOMPARE(field->text(), QString(t.after));
        QCOMPARE(LastBox(), QString(t.box));
        // A refused value keeps the focus in the field.
        QCOMPARE(QApplication::focusWidget() == field, *t.box != 0);
    }

    void weekConverter_data() { AddRows(kWeeks); }
    void weekConverter() {
        const Weeks& w = Row(kWeeks);
        auto& desktop = mFixture->Desktop();
        Type(mForm, 5, w.sent);
        PressTab(); // Date Due fills with 56 days on
        desktop.SetNextInput(w.answer);
        QTest::keyClick(Enter(mForm, 9), 'w');
        QCOMPARE(desktop.inputPrompts,
                 *w.sent ? QStringList{"Enter the number of weeks from the Date Sent until the "
                                       "rebate is due:"}
                         : QStringList());
        QCOMPARE(mForm->txtFields(RebateField::DateDue)->text(), QString(w.due));
        QCOMPARE(desktop.boxes.isEmpty() ? QString() : desktop.boxes.last().prompt, QString(w.box));
    }

    // The phone button: a number with digits opens the dialer, letters as they stand, and dials
    // it for the rebate's name; one without digits gives the box.
    // The main toolbar's Dialer opens an empty dialer over the form.
    void toolbarDialer() {
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            QVERIFY(static_cast<frmAutoDial&>(*dialog).txtNumber->text().isEmpty());
        });
        mMain->tbToolBar_ButtonClick("Dialer");
        QVERIFY(mOpened);
    }
    void dial_data() {
        QTest::addColumn<QString>("phone");
        QTest::addColumn<QString>("box");
        QTest::newRow("letters go as they stand") << QString("1-800-FLOWERS") << QString();
        QTest::newRow("punctuation only") << QString("(--)") << QString("Invalid Telephone Number");
    }
    void dial() {
        QFETCH(QString, phone);
        QFETCH(QString, box);
        mForm->txtFields(RebateField::PhoneNumber)->setText(phone);
        mForm->txtFields(RebateField::RebateName)->setText("Acme");
        auto* cmdDial = mForm->findChild<QPushButton*>("cmdDial");
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QCOMPARE(dial.txtNumber->text(), phone);
            QCOMPARE(dial.txtName->text(), QString("Acme"));
            QTest::mouseClick(dial.findChild<QPushButton*>("cmdDial"), Qt::LeftButton);
        });
        QTest::keyClick(cmdDial, Qt::Key_Space);
        QCOMPARE(mOpened, box.isEmpty());
        QCOMPARE(mFixture->Desktop().dialed,
                 box.isEmpty() ? QStringList{phone + "|AutoDial|Acme|"} : QStringList());
        QCOMPARE(LastBox(), box);
    }

    void links_data() { AddRows(kLinks); }
    void links() {
        const Link& l = Row(kLinks);
        mForm->txtFields(l.index)->setText(l.text);
        QTest::mouseClick(Enter(mForm, l.index), Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments.join(QString()), QString(l.opened));
    }

    void editCommands_data() { AddRows(kEdits); }
    void editCommands() {
        const Edit& e = Row(kEdits);
        QApplication::clipboard()->setText("stale");
        mForm->txtFields(e.index)->setText(e.before);
        FieldEdit* field = Enter(mForm, e.index);
        for (const QString& step : QString(e.steps).split('|')) {
            const QString name = step.mid(1).chopped(1);
            if (step.startsWith('[')) {
                if (name.startsWith("Paste:"))
                    QApplication::clipboard()->setText(name.mid(6));
                mMain->tbToolBar_ButtonClick(name.section(':', 0, 0));
            } else if (step.startsWith('{')) {
                const QKeyCombination key = QKeySequence(name)[0];
                QTest::keyClick(field, key.key(), key.keyboardModifiers());
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
