#include "DataRows.h"
#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "common/core/Settings.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>

using namespace RebateFormDriver;

namespace {
// The field, text set beforehand by code, keys typed (the field's text selected by Tab is kept
// for the date shortcuts, which read it) or, after "|", text pasted and the field left; the text
// afterwards and the box shown.
const struct Keys {
    const char* name;
    int index;
    const char *before, *keys, *expected, *box = "";
} kKeys[] = {
    {"date: digits and slash", 5, "", "13/45", "13/45"},
    {"date: letters, dot, comma, minus refused", 1, "", "1a.b,2", "12"},
    {"date: T is today", 10, "01/01/2020", "T", "11/23/2026"},
    {"date: y ignores the field", 19, "03/15/2020", "Y", "11/22/2026"},
    {"date: + and = over the year end", 9, "12/30/1999", "+=", "01/01/2000"},
    {"date: - and _ into a leap day", 11, "03/02/2024", "-_", "02/29/2024"},
    {"date: w outside Date Due swallowed", 1, "", "wW", ""},
    {"money: digits, dot, dollar", 2, "", "$12.50", "$12.50"},
    {"money: repeated dots pass", 3, "", "1..$$", "1..$$"},
    {"money: minus, comma, letters refused", 4, "", "-1,000x", "1000"},
    {"phone: keypad", 13, "", "1-800-FLOWERS", "1-800-3569377"},
    {"phone: q is 0, Q is 7", 13, "", "qQ", "07"},
    {"text: c is a letter", 20, "", "cwt+-", "cwt+-"},
    {"left: date rewritten", 1, "", "|3/5/26", "03/05/2026"},
    {"left: date of this year", 19, "", "|12/5", "12/05/2026"},
    {"left: date refused", 1, "", "|13/45", "13/45",
     "Invalid Date | 0 | Please enter a valid date."},
    {"left: money rounded", 3, "", "|0.125", "$0.13"},
    {"left: money refused", 3, "", "|1..$$", "1..$$",
     "Invalid Amount | 0 | Please enter a valid currency amount."},
};

// Amount Rec'd, Date Received and Rebate Amount, the answer, whether the question is asked, the
// amount after.
const char *const kDate = "11/20/2026", *const kAmount = "$25.00";
const struct Question {
    const char *name, *received, *date, *rebate;
    int answer;
    bool asked;
    const char* after;
} kQuestions[] = {
    {"yes copies", "", kDate, kAmount, 6, true, kAmount},
    {"no keeps", "", kDate, kAmount, 7, true, ""},
    {"zero asks", "$0.00", kDate, kAmount, 6, true, kAmount},
    {"an amount doesn't ask", "$5.00", kDate, kAmount, 6, false, "$5.00"},
    {"no date received", "", "", kAmount, 6, false, ""},
};
} // namespace

class tst_fieldrules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<MainWindowFixture>();
        mForm = OpenNew();
    }
    void cleanup() { mFixture.reset(); }
    void keys_data() { AddRows(kKeys); }
    void keys() {
        const Keys& k = Row(kKeys);
        FieldEdit* field = mForm->txtFields(k.index);
        field->setText(k.before);
        Enter(mForm, k.index);
        if (*k.before)
            field->deselect(); // the shortcuts read the text; typing digits would replace it
        field->setCursorPosition(static_cast<int>(field->text().length()));
        const bool leave = *k.keys == '|';
        if (leave) {
            field->insert(k.keys + 1); // as a paste: around the key rules
            PressTab();
        } else {
            QTest::keyClicks(field, k.keys);
        }
        QCOMPARE(field->text(), QString(k.expected));
        QCOMPARE(mFixture->Desktop().Shown(), *k.box ? QStringList{k.box} : QStringList());
        QCOMPARE(field->hasFocus(), !leave || *k.box);
    }
    // A letter the keypad has no digit for leaves the field as it was; the error is logged and
    // the program goes on.
    void letterWithoutDigitIsLogged() {
        FieldEdit* field = Type(mForm, 13, "55");
        // As a keyboard sends it; QTest's own key clicks know no accented letters.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString("é"));
        QApplication::sendEvent(field, &press);
        QCOMPARE(field->text(), QString("55"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Vantry! Vantry! Error"));
        QVERIFY(mFixture->LogText().contains("txtFields_KeyPress"));
        QTest::keyClicks(field, "1");
        QCOMPARE(field->text(), QString("551"));
    }
    void datesFillDueAndPostage() {
        FieldEdit* postage = mForm->txtFields(RebateField::PostagePrice);
        FieldEdit* due = mForm->txtFields(RebateField::DateDue);
        Type(mForm, 5, "11/10/2026");
        QCOMPARE(postage->text(), QString("0.32")); // each keystroke fills an empty postage
        PressTab();
        QCOMPARE(due->text(), QString("1/5/2027")); // 56 days on, M/d/yyyy
        // None past 12/31/9999.
        due->clear();
        Type(mForm, 5, "12/01/9999");
        PressTab();
        QCOMPARE(due->text(), QString());
        Type(mForm, 5, "11/10/2026");
        PressTab();

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

        // Followup Date emptied: its postage is zero; typed: the default, the setting not money.
        SaveSetting(kAppTitle, "Options", "Postage", "a stamp");
        FieldEdit* followup = mForm->txtFields(RebateField::FollowupPostage);
        followup->setText("$1.00");
        QTest::keyClick(Type(mForm, 11, "1"), Qt::Key_Backspace);
        QCOMPARE(followup->text(), QString("0.00"));
        Type(mForm, 11, "1");
        QCOMPARE(followup->text(), QString("0.32"));
    }
    void fullAmountQuestion_data() { AddRows(kQuestions); }
    void fullAmountQuestion() {
        const Question& q = Row(kQuestions);
        mForm->txtFields(RebateField::AmountReceived)->setText(q.received);
        mForm->txtFields(RebateField::DateReceived)->setText(q.date);
        mForm->txtFields(RebateField::RebateAmount)->setText(q.rebate);
        mFixture->Desktop().SetNextAnswer(q.answer);
        Enter(mForm, 8);
        QCOMPARE(mFixture->Desktop().Shown(),
                 q.asked ? QStringList{"Amount Received | 36 | Did you receive the full amount?"}
                         : QStringList());
        QCOMPARE(mForm->txtFields(RebateField::AmountReceived)->text(), QString(q.after));
    }

private:
    std::unique_ptr<MainWindowFixture> mFixture;
    frmRebate* mForm = nullptr;
};

QTEST_MAIN(tst_fieldrules)
#include "tst_fieldrules.moc"
