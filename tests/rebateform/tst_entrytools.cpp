#include "MainWindowFixture.h"
#include "Modal.h"
#include "RebateFormDriver.h"
#include "common/core/Globals.h"
#include "common/ui/Toolbar.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "tools/frmAutoDial.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace RebateFormDriver;

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

    // field, its text, the keys inside the calendar, the field afterwards.
    void calendar_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("after");
        QTest::newRow("empty field starts on today")
            << 19 << "" << QList<int>{Qt::Key_Right, Qt::Key_Return} << "11/24/2026";
        QTest::newRow("from the field's date")
            << 1 << "3/5/2026" << QList<int>{Qt::Key_PageDown, Qt::Key_Return} << "04/05/2026";
        QTest::newRow("escape leaves the field")
            << 5 << "3/5/2026" << QList<int>{Qt::Key_Right, Qt::Key_Escape} << "3/5/2026";
        QTest::newRow("no day after 12/31/9999")
            << 9 << "12/31/9999" << QList<int>{Qt::Key_Right, Qt::Key_Return} << "12/31/9999";
    }
    void calendar() {
        QFETCH(int, index);
        QFETCH(QString, before);
        QFETCH(QList<int>, keys);
        QFETCH(QString, after);
        mForm->txtFields(index)->setText(before);
        FieldEdit* field = Enter(mForm, index);
        WhileModal("frmCalendar", &mOpened, [&](QWidget*) {
            for (int key : keys)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        });
        QTest::keyClick(field, 'c');
        QVERIFY(mOpened);
        QCOMPARE(field->text(), after);
        QTRY_COMPARE(QApplication::focusWidget(), field);
    }

    // The calculator types its result into the money field as keys; the field's check on
    // leaving decides.
    void calculator_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("box");
        const auto row = [](const char* name, const char* typed, const char* keys,
                            const char* button, const char* after, const char* box) {
            QTest::newRow(name) << QString(typed) << QString(keys) << QString(button)
                                << QString(after) << QString(box);
        };
        row("seeded, added, checked on leaving", "12.50", "+1=", "cmdOK", "$13.50", "");
        row("a negative result loses its minus", "2", "-5=", "cmdOK", "$3.00", "");
        row("beyond money: the field refuses", "900000000000000", "*10=", "cmdOK",
            "9000000000000000", "Invalid Amount");
        row("Close leaves the field", "7", "+1=", "cmdCancel", "$7.00", "");
    }
    void calculator() {
        QFETCH(QString, typed);
        QFETCH(QString, keys);
        QFETCH(QString, button);
        QFETCH(QString, after);
        QFETCH(QString, box);
        FieldEdit* field = Type(mForm, 4, typed);
        WhileModal("frmCalculator", &mOpened, [&](QWidget* dialog) {
            QTest::keyClicks(QApplication::focusWidget(), keys);
            QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
        });
        QTest::keyClick(field, 'c');
        QVERIFY(mOpened);
        QTRY_COMPARE(QApplication::focusWidget(), field);
        PressTab();
        QCOMPARE(field->text(), after);
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.isEmpty() ? QString() : boxes.last().title, box);
        // A refused amount keeps the focus in the field.
        QCOMPARE(QApplication::focusWidget() == field, !box.isEmpty());
    }

    // "w" asks for weeks only in Date Due with a Date Sent.
    void weekConverter_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<QString>("due");
        const auto row = [](const char* name, int index, const char* sent, const char* answer,
                            bool asked, const char* due) {
            QTest::newRow(name) << index << QString(sent) << QString(answer) << asked
                                << QString(due);
        };
        row("six weeks", 9, "12/01/2025", "6", true, "1/12/2026");
        row("cancel keeps the date", 9, "12/01/2025", "", true, "1/26/2026");
        row("no date sent", 9, "", "6", false, "");
        row("not in Date Sent", 5, "12/01/2025", "6", false, "1/26/2026");
    }
    void weekConverter() {
        QFETCH(int, index);
        QFETCH(QString, sent);
        QFETCH(QString, answer);
        QFETCH(bool, asked);
        QFETCH(QString, due);
        Type(mForm, 5, sent);
        PressTab(); // Date Due fills with 56 days on
        mFixture->Desktop().SetNextInput(answer);
        QTest::keyClick(Enter(mForm, index), 'w');
        QCOMPARE(mFixture->Desktop().inputPrompts.size(), asked ? 1 : 0);
        QCOMPARE(mForm->txtFields(RebateField::DateDue)->text(), due);
    }

    // Alt+Z opens the field's text in the zoom box; the edit comes back and the field's own
    // check runs when the focus leaves.
    void zoom_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("box");
        QTest::newRow("remarks") << 17 << QString(" in May") << QString("Mailed in May")
                                 << QString();
        QTest::newRow("a bad date is refused on leaving")
            << 5 << QString("x") << QString("Mailedx") << QString("Invalid Date");
    }
    void zoom() {
        QFETCH(int, index);
        QFETCH(QString, typed);
        QFETCH(QString, after);
        QFETCH(QString, box);
        mForm->txtFields(index)->setText(QStringLiteral("Mailed"));
        FieldEdit* field = Enter(mForm, index);
        WhileModal("frmZoomBox", &mOpened, [&](QWidget* dialog) {
            QTest::keyClicks(dialog->findChild<QPlainTextEdit*>(QStringLiteral("txtText")), typed);
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("btnOK")),
                              Qt::LeftButton);
        });
        QTest::keyClick(field, Qt::Key_Z, Qt::AltModifier);
        QVERIFY(mOpened);
        QCOMPARE(field->text(), after);
        QTRY_COMPARE(QApplication::focusWidget(), field);
        PressTab();
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.isEmpty() ? QString() : boxes.last().title, box);
        QCOMPARE(QApplication::focusWidget() == field, !box.isEmpty());
    }
    void zoomOnTheCheckBox() {
        QCheckBox* rejected = mForm->chkFields(21);
        Enter(mForm, 11);
        rejected->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(rejected->hasFocus());
        QTest::keyClick(rejected, Qt::Key_Z, Qt::AltModifier);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(rejected->hasFocus());
    }

    // The phone button: a number with digits opens the dialer, one without gives the box.
    void dial_data() {
        QTest::addColumn<QString>("phone");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("dialed");
        QTest::addColumn<QString>("box");
        QTest::newRow("letters go as they stand")
            << QString("1-800-FLOWERS") << QString("Acme")
            << QString("1-800-FLOWERS|AutoDial|Acme|") << QString();
        QTest::newRow("punctuation only") << QString("(--)") << QString("Acme") << QString()
                                          << QString("Invalid Telephone Number");
    }
    void dial() {
        QFETCH(QString, phone);
        QFETCH(QString, name);
        QFETCH(QString, dialed);
        QFETCH(QString, box);
        mForm->txtFields(RebateField::PhoneNumber)->setText(phone);
        mForm->txtFields(RebateField::RebateName)->setText(name);
        Enter(mForm, 13);
        auto* cmdDial = mForm->findChild<QPushButton*>(QStringLiteral("cmdDial"));
        cmdDial->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(cmdDial->hasFocus());
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QCOMPARE(dial.txtNumber->text(), phone);
            QCOMPARE(dial.txtName->text(), name);
            QTest::mouseClick(dial.findChild<QPushButton*>(QStringLiteral("cmdDial")),
                              Qt::LeftButton);
        });
        QTest::keyClick(cmdDial, Qt::Key_Space);
        QCOMPARE(mOpened, box.isEmpty());
        QCOMPARE(mFixture->Desktop().dialed.join(QString()), dialed);
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.isEmpty() ? QString() : boxes.last().title, box);
        QWidget* focus = box.isEmpty() ? static_cast<QWidget*>(cmdDial)
                                       : mForm->txtFields(RebateField::PhoneNumber);
        QTRY_COMPARE(QApplication::focusWidget(), focus);
    }

    // The main toolbar's Calc and Dialer open the tools without a field.
    void toolbarTools() {
        WhileModal("frmAutoDial", &mOpened, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QVERIFY(dial.txtNumber->text().isEmpty());
            QVERIFY(!dial.lblName->isVisible());
            QVERIFY(!dial.findChild<QPushButton*>(QStringLiteral("cmdDial"))->isEnabled());
        });
        mMain->tbToolBar_ButtonClick(QStringLiteral("Dialer"));
        QVERIFY(mOpened);
        WhileModal("frmCalculator", &mOpened, [&](QWidget* dialog) {
            QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("Readout"))->text(),
                     QStringLiteral("0."));
        });
        mMain->tbToolBar_ButtonClick(QStringLiteral("Calc"));
        QVERIFY(mOpened);
    }

    // What a click on a link field opens, and its colour afterwards.
    void links_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("opened");
        const auto row = [](const char* name, int index, const char* text, const char* opened) {
            QTest::newRow(name) << index << QString(text) << QString(opened);
        };
        row("web", 22, "www.example.com", "http://www.example.com");
        row("web with its prefix in capitals", 22, "HTTP://example.com", "HTTP://example.com");
        row("https gets the http prefix", 22, "https://example.com", "http://https://example.com");
        row("email", 7, "rebates@example.com", "mailto:rebates@example.com");
        row("email with its prefix", 7, "MailTo:a@example.com", "MailTo:a@example.com");
        row("empty opens nothing", 7, "", "");
    }
    void links() {
        QFETCH(int, index);
        QFETCH(QString, text);
        QFETCH(QString, opened);
        FieldEdit* field = mForm->txtFields(index);
        field->setText(text);
        Enter(mForm, index);
        const QColor blue(0, 0, 255), red(255, 0, 0), magenta(255, 0, 255);
        QCOMPARE(field->palette().color(QPalette::Text), blue);
        MoveMouse(field);
        QCOMPARE(field->palette().color(QPalette::Text), text.isEmpty() ? blue : red);
        MoveMouse(mForm);
        QCOMPARE(field->palette().color(QPalette::Text), blue);
        QTest::mouseClick(field, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments.join(QString()), opened);
        QCOMPARE(field->palette().color(QPalette::Text), text.isEmpty() ? blue : magenta);
        MoveMouse(field);
        MoveMouse(mForm);
        QCOMPARE(field->palette().color(QPalette::Text), text.isEmpty() ? blue : magenta);
    }

    // Undo, cut, copy and paste on the field with the focus, by keys and by the menu.
    void editCommands_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("steps"); // typed text, or {Esc} {Cut} {Copy} {Paste:x} {Home}
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("clipboard");
        QTest::addColumn<QString>("box");
        const struct {
            const char* name;
            int index;
            const char *before, *steps, *after, *clipboard, *box;
        } rows[] = {
            {"escape undoes the typing", 15, "Old", "New|{Esc}", "Old", "stale", ""},
            {"a second escape brings it back", 15, "Old", "New|{Esc}|{Esc}", "New", "stale", ""},
            {"nothing to undo after a shortcut", 1, "", "t|{Esc}", "11/23/2026", "stale", ""},
            {"copy the selection", 15, "Toaster", "{Copy}", "Toaster", "Toaster", ""},
            {"copy without a selection empties the clipboard", 15, "Toaster", "{End}|{Copy}",
             "Toaster", "", ""},
            {"cut the selection, then undo", 15, "Toaster", "{Cut}|{Esc}", "Toaster", "Toaster",
             ""},
            {"cut without a selection deletes at the caret", 15, "Toaster", "{Home}|{Cut}",
             "oaster", "", ""},
            {"paste a bad date: refused at once, kept", 5, "", "{Paste:13/45}", "13/45", "13/45",
             "Invalid Date"},
            {"paste a date: rewritten at once", 5, "", "{Paste:3/5/26}", "03/05/2026", "3/5/26",
             ""},
            {"paste letters into a phone number", 13, "", "{Paste:1-800-FLOWERS}", "1-800-FLOWERS",
             "1-800-FLOWERS", ""},
            {"paste, then undo", 15, "Toaster", "{End}|{Paste: Deluxe}|{Esc}", "Toaster", " Deluxe",
             ""},
        };
        for (const auto& row : rows)
            QTest::newRow(row.name)
                << row.index << row.before << row.steps << row.after << row.clipboard << row.box;
    }
    void editCommands() {
        QFETCH(int, index);
        QFETCH(QString, before);
        QFETCH(QString, steps);
        QFETCH(QString, after);
        QFETCH(QString, clipboard);
        QFETCH(QString, box);
        QApplication::clipboard()->setText(QStringLiteral("stale"));
        mForm->txtFields(index)->setText(before);
        FieldEdit* field = Enter(mForm, index);
        for (const QString& step : steps.split('|')) {
            if (step == QLatin1String("{Esc}"))
                QTest::keyClick(field, Qt::Key_Escape);
            else if (step == QLatin1String("{Home}"))
                QTest::keyClick(field, Qt::Key_Home);
            else if (step == QLatin1String("{End}"))
                QTest::keyClick(field, Qt::Key_End);
            else if (step == QLatin1String("{Cut}"))
                mMain->tbToolBar_ButtonClick(QStringLiteral("Cut"));
            else if (step == QLatin1String("{Copy}"))
                mMain->tbToolBar_ButtonClick(QStringLiteral("Copy"));
            else if (step.startsWith(QLatin1String("{Paste:"))) {
                QApplication::clipboard()->setText(step.mid(7).chopped(1));
                mMain->tbToolBar_ButtonClick(QStringLiteral("Paste"));
            } else
                QTest::keyClicks(field, step);
        }
        QCOMPARE(field->text(), after);
        QCOMPARE(QApplication::clipboard()->text(), clipboard);
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.isEmpty() ? QString() : boxes.last().title, box);
        QCOMPARE(QApplication::focusWidget(), field);
    }

    // The toolbar's Cut and Copy follow the selection of the field.
    void cutCopyFollowTheSelection() {
        Toolbar* toolbar = mMain->tbToolBar;
        mForm->txtFields(RebateField::LocationPurchased)->setText(QStringLiteral("Toaster"));
        FieldEdit* field = Enter(mForm, 15); // Tab selects the text
        QVERIFY(toolbar->Buttons(QStringLiteral("Cut")).Enabled());
        QVERIFY(toolbar->Buttons(QStringLiteral("Copy")).Enabled());
        QTest::keyClick(field, Qt::Key_End);
        QVERIFY(!toolbar->Buttons(QStringLiteral("Cut")).Enabled());
        QVERIFY(!toolbar->Buttons(QStringLiteral("Copy")).Enabled());
        QTest::keyClick(field, Qt::Key_Left, Qt::ShiftModifier);
        QVERIFY(toolbar->Buttons(QStringLiteral("Copy")).Enabled());
    }

    // A date shortcut past 12/31/9999 is refused and the field keeps its date.
    void shortcutPastTheLastDate() {
        mForm->txtFields(RebateField::DateDue)->setText(QStringLiteral("12/31/9999"));
        QTest::keyClick(Enter(mForm, 9), '+');
        QCOMPARE(mForm->txtFields(RebateField::DateDue)->text(), QStringLiteral("12/31/9999"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QCOMPARE(mFixture->Desktop().boxes.first().title, QStringLiteral("Invalid Date"));
    }

private:
    static void MoveMouse(QWidget* widget) {
        QMouseEvent move(QEvent::MouseMove, QPointF(2, 2), widget->mapToGlobal(QPointF(2, 2)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(widget, &move);
    }

    std::unique_ptr<MainWindowFixture> mFixture;
    frmMDI* mMain = nullptr;
    frmRebate* mForm = nullptr;
    bool mOpened = false;
};

QTEST_MAIN(tst_entrytools)
#include "tst_entrytools.moc"
