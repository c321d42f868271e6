#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "common/core/Settings.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>

using namespace RebateFormDriver;

class tst_fieldrules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<MainWindowFixture>();
        mForm = OpenNew();
    }
    void cleanup() { mFixture.reset(); }
    // index, text set beforehand by code, keys typed (the field's text selected by Tab is kept
    // for the date shortcuts, which read it), expected text.
    void keys_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("expected");
        const struct {
            const char* name;
            int index;
            const char *before, *keys, *expected;
        } rows[] = {
            {"date: digits and slash", 5, "", "13/45", "13/45"},
            {"date: letters, dot, comma, minus refused", 1, "", "1a.b,2", "12"},
            {"date: T is today", 10, "01/01/2020", "T", "11/23/2026"},
            {"date: y ignores the field", 19, "03/15/2020", "Y", "11/22/2026"},
            {"date: + on empty is today", 9, "", "+", "11/23/2026"},
            {"date: + over the year end", 9, "12/31/1999", "+", "01/01/2000"},
            {"date: = over a month end", 9, "11/30/2026", "=", "12/01/2026"},
            {"date: - into a leap day", 11, "03/01/2024", "-", "02/29/2024"},
            {"date: _ over the year start", 11, "1/1/2027", "_", "12/31/2026"},
            {"date: shortcuts repeat", 5, "", "t++-", "11/24/2026"},
            {"date: w outside Date Due swallowed", 1, "", "wW", ""},
            {"money: digits, dot, dollar", 2, "", "$12.50", "$12.50"},
            {"money: repeated dots pass", 3, "", "1..$$", "1..$$"},
            {"money: minus, comma, letters refused", 4, "", "-1,000x", "1000"},
            {"phone: keypad", 13, "", "1-800-FLOWERS", "1-800-3569377"},
            {"phone: lowercase keypad", 13, "", "abc def ghi jkl mno prs tuv wxy",
             "222 333 444 555 666 777 888 999"},
            {"phone: q is 0, Q is 7", 13, "", "qQ", "07"},
            {"phone: punctuation passes", 13, "", "(555) 12-34/5", "(555) 12-34/5"},
            {"text: c is a letter", 20, "", "cwt+-", "cwt+-"},
        };
        for (const auto& r : rows)
            QTest::newRow(r.name) << r.index << QString(r.before) << QString(r.keys)
                                  << QString(r.expected);
    }
    void keys() {
        QFETCH(int, index);
        QFETCH(QString, before);
        QFETCH(QString, keys);
        QFETCH(QString, expected);
        FieldEdit* field = mForm->txtFields(index);
        field->setText(before);
        Enter(mForm, index);
        if (!before.isEmpty())
            field->deselect(); // the shortcuts read the text; typing digits would replace it
        field->setCursorPosition(static_cast<int>(field->text().length()));
        QTest::keyClicks(field, keys);
        QCOMPARE(field->text(), expected);
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }
    void letterWithoutDigitIsLogged_data() {
        QTest::addColumn<QString>("letter");
        for (const char* letter : {"z", "é"})
            QTest::newRow(letter) << QString::fromUtf8(letter);
    }
    // A letter the keypad has no digit for leaves the field as it was; the error is logged and
    // the program goes on.
    void letterWithoutDigitIsLogged() {
        QFETCH(QString, letter);
        FieldEdit* field = Type(mForm, 13, "55");
        // As a keyboard sends it; QTest's own key clicks know no accented letters.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, letter);
        QApplication::sendEvent(field, &press);
        QCOMPARE(field->text(), QString("55"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Vantry! Vantry! Error"));
        const QString entry = mFixture->LogText();
        QVERIFY(entry.contains("frmRebate"));
        QVERIFY(entry.contains("txtFields_KeyPress"));
        QTest::keyClicks(field, "1");
        QCOMPARE(field->text(), QString("551"));
    }
    // The field, text put in by pasting, the text after leaving, the box shown ("" for none).
    void leavingField_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("box");
        const auto row = [](const char* name, int index, const char* text, const char* after,
                            const char* box) {
            QTest::newRow(name) << index << QString(text) << QString(after) << QString(box);
        };
        row("date rewritten", 1, "3/5/26", "03/05/2026", "");
        row("date of this year", 19, "12/5", "12/05/2026", "");
        row("date refused", 1, "13/45", "13/45", "Invalid Date | 0 | Please enter a valid date.");
        row("money rewritten", 2, "12.5", "$12.50", "");
        row("money rounded", 3, "0.125", "$0.13", "");
        row("money refused", 3, "1..$$", "1..$$",
            "Invalid Amount | 0 | Please enter a valid currency amount.");
        row("phone never refused", 13, "(800) FLOWERS!", "(800) FLOWERS!", "");
        row("text untouched", 20, "  Spaced  ", "  Spaced  ", "");
    }
    void leavingField() {
        QFETCH(int, index);
        QFETCH(QString, text);
        QFETCH(QString, after);
        QFETCH(QString, box);
        FieldEdit* field = Enter(mForm, index);
        field->insert(text); // as a paste: around the key rules
        PressTab();
        QCOMPARE(field->text(), after);
        QCOMPARE(mFixture->Desktop().Shown(), box.isEmpty() ? QStringList() : QStringList{box});
        QCOMPARE(field->hasFocus(), !box.isEmpty());
    }
    void dateSentFillsDueAndPostage() {
        FieldEdit* postage = mForm->txtFields(RebateField::PostagePrice);
        FieldEdit* due = mForm->txtFields(RebateField::DateDue);
        Type(mForm, 5, "11/10/2026");
        QCOMPARE(postage->text(), QString("0.32")); // each keystroke fills an empty postage
        PressTab();
        QCOMPARE(due->text(), QString("1/5/2027")); // 56 days on, M/d/yyyy

        // A Date Due already there stays; a postage of zero gives way to the setting.
        SaveSetting(kAppTitle, "Options", "Postage", ".45");
        postage->setText("$0.00");
        Type(mForm, 5, "12/01/2026");
        PressTab();
        QCOMPARE(due->text(), QString("1/5/2027"));
        QCOMPARE(postage->text(), QString("0.45"));
        // A postage typed by the user is kept.
        postage->setText("$1.00");
        Type(mForm, 5, "t");
        QCOMPARE(postage->text(), QString("$1.00"));
    }
    void followupDateFillsFollowupPostage() {
        SaveSetting(kAppTitle, "Options", "Postage", "a stamp"); // not money: the default
        FieldEdit* postage = mForm->txtFields(RebateField::FollowupPostage);
        postage->setText("$1.00");
        QTest::keyClick(Type(mForm, 11, "1"), Qt::Key_Backspace);
        QCOMPARE(postage->text(), QString("0.00"));
        Type(mForm, 11, "1");
        QCOMPARE(postage->text(), QString("0.32"));
    }
    // Amount Rec'd, Date Received and Rebate Amount, the answer, the question asked, the amount
    // after.
    void fullAmountQuestion_data() {
        QTest::addColumn<QString>("received");
        QTest::addColumn<QString>("dateReceived");
        QTest::addColumn<QString>("rebate");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* name, const char* received, const char* date,
                            const char* rebate, int answer, bool asked, const char* after) {
            QTest::newRow(name) << QString(received) << QString(date) << QString(rebate) << answer
                                << asked << QString(after);
        };
        const char *date = "11/20/2026", *amount = "$25.00";
        row("yes copies", "", date, amount, 6, true, amount);
        row("no keeps", "", date, amount, 7, true, "");
        row("zero asks", "$0.00", date, amount, 6, true, amount);
        row("an amount doesn't ask", "$5.00", date, amount, 6, false, "$5.00");
        row("no date received", "", "", amount, 6, false, "");
        row("no rebate amount", "", date, "", 6, false, "");
    }
    void fullAmountQuestion() {
        QFETCH(QString, received);
        QFETCH(QString, dateReceived);
        QFETCH(QString, rebate);
        QFETCH(int, answer);
        QFETCH(bool, asked);
        QFETCH(QString, after);
        mForm->txtFields(RebateField::AmountReceived)->setText(received);
        mForm->txtFields(RebateField::DateReceived)->setText(dateReceived);
        mForm->txtFields(RebateField::RebateAmount)->setText(rebate);
        mFixture->Desktop().SetNextAnswer(answer);
        Enter(mForm, 8);
        QCOMPARE(mFixture->Desktop().Shown(),
                 asked ? QStringList{"Amount Received | 36 | Did you receive the full amount?"}
                       : QStringList());
        QCOMPARE(mForm->txtFields(RebateField::AmountReceived)->text(), after);
    }
    // Tab into a field selects its text, as F2 does; the field's status text shows.
    void tabAndF2Select() {
        FieldEdit* name = mForm->txtFields(RebateField::RebateName);
        name->setText("Spring Mail-In");
        QTest::keyClick(Enter(mForm, 0), Qt::Key_Backtab, Qt::ShiftModifier);
        QTRY_VERIFY(name->hasFocus());
        QCOMPARE(name->selectedText(), QString("Spring Mail-In"));
        QCOMPARE(mForm->findChild<QLabel*>("lblStatus")->text(),
                 QString("Name of rebate offer..."));
        name->deselect();
        QTest::keyClick(name, Qt::Key_F2);
        QCOMPARE(name->selectedText(), QString("Spring Mail-In"));
    }

private:
    std::unique_ptr<MainWindowFixture> mFixture;
    frmRebate* mForm = nullptr;
};

QTEST_MAIN(tst_fieldrules)
#include "tst_fieldrules.moc"
