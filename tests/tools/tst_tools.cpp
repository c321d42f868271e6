#include "Fixture.h"
#include "Modal.h"
#include "common/core/Globals.h"
#include "common/ui/Forms.h"
#include "tools/frmAutoDial.h"
#include "tools/frmCalculator.h"
#include "tools/frmCalendar.h"

#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// The entry tools on their own (tst_entrytools runs each over the rebate form's fields). The
// tables compare "row: result" lists, so a failure names its row.
class tst_tools : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        mOwner = std::make_unique<QWidget>();
        mField = new QLineEdit(mOwner.get());
        new QPushButton("Other", mOwner.get()); // somewhere else the focus could land
        mOwner->show();
        QApplication::setActiveWindow(mOwner.get());
        mField->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), mField);
    }
    void cleanup() {
        mOwner.reset();
        mFixture.reset();
    }

    // Start date, keys, buttons or day cells in order, the chosen date afterwards (and the month's
    // caption where the row names one). March 2025 starts on a Saturday, in cell 6.
    void calendarMoves() {
        const struct {
            const char *name, *start, *moves, *expected;
        } rows[] = {
            {"month back from Mar 31, leap year", "03/31/2024", "cmdMonthBack", "02/29/2024"},
            {"year ahead from Feb 29", "02/29/2024", "cmdYearAhead", "02/28/2025"},
            {"arrows over the month end", "11/30/2026", "Right Right Down Left Up", "12/01/2026"},
            {"past 9999", "12/31/9999", "Right cmdYearAhead cmdMonthForward", "12/31/9999"},
            {"before 100", "01/01/0100", "Left cmdMonthBack cmdYearBack", "01/01/0100"},
            {"today", "03/05/2020", "cmdToday", "11/23/2026"},
            {"reset to the date handed in", "03/05/2020", "cmdYearAhead cmdReset", "03/05/2020"},
            {"a click on a cell", "03/10/2025", "Label3_20", "03/15/2025 MARCH"},
        };
        QStringList got, expected;
        for (const auto& row : rows) {
            gsCalendarDate = row.start;
            frmCalendar form(mOwner.get());
            form.show();
            QWidget* grid = form.findChild<QWidget*>("fraCalendar");
            for (const QString& move : QString(row.moves).split(' ')) {
                if (move.startsWith("cmd") || move.startsWith("Label3_")) {
                    QTest::mouseClick(form.findChild<QWidget*>(move), Qt::LeftButton);
                    continue;
                }
                const QKeyCombination key = QKeySequence(move)[0];
                QTest::keyClick(grid, key.key(), key.keyboardModifiers());
            }
            QString chosen = form.ChosenDate().toString("MM/dd/yyyy");
            if (QString(row.expected).contains(' '))
                chosen += ' ' + form.findChild<QLabel*>("lblMonth")->text();
            got << row.name + (": " + chosen);
            expected << row.name + (": " + QString(row.expected));
        }
        QCOMPARE(got, expected);
    }

    // Seed, keys typed, display afterwards and the message box.
    void calculatorKeys() {
        const struct {
            const char* name;
            double seed;
            const char *keys, *readout;
        } rows[] = {
            {"chain, negative second operand", 0, "2+3*-4=", "-20"},
            {"divide by zero keeps the first", 0, "5/0=", "5 Calculator|Can't divide by zero"},
            {"percent", 0, "200*5%=", "10"},
            {"C goes back to the seed", 12.5, "+9C", "12.5"},
            {"keypad letters", 0, "6k2j3=", "24"},
            {"backspace drops a digit", 0, "123\b", "12."},
        };
        auto& boxes = mFixture->Desktop().boxes;
        QStringList got, expected;
        for (const auto& row : rows) {
            boxes.clear();
            gcCalculatorValue = Currency::FromDouble(row.seed);
            frmCalculator form(mOwner.get());
            form.show();
            QTest::keyClicks(form.findChild<QPushButton*>("Number_5"), row.keys);
            QString result = form.Readout();
            for (const auto& box : boxes)
                result += ' ' + box.title + '|' + box.prompt;
            got << row.name + (": " + result);
            expected << row.name + (": " + QString(row.readout));
        }
        QCOMPARE(got, expected);
    }

    // The dial button follows the number; each call reports its code and leaves the dialog open.
    // Without a name the number is the called party too.
    void dialer() {
        const QList<std::pair<int, QString>> codes{
            {0, ""},
            {-2, "No Windows Telephony dialing application is running and none could be started."},
            {-3, "The queue of pending Windows Telephony dialing requests is full."},
            {-4, "The phone number is invalid."},
            {-7, "Unknown error."}};
        auto& desktop = mFixture->Desktop();
        QStringList shown;
        for (const auto& [code, box] : codes) {
            desktop.SetNextDialResult(code);
            if (!box.isEmpty())
                shown << "Dialing Error | 48 | Error dialing number : " + box;
        }
        QString status;
        WhileModal("frmAutoDial", nullptr, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QVERIFY(!dial.lblName->isVisible());
            auto* cmdDial = dial.findChild<QPushButton*>("cmdDial");
            QCOMPARE(QApplication::focusWidget(), dial.txtNumber);
            dial.txtNumber->selectAll();
            QTest::keyClicks(dial.txtNumber, "   ");
            QVERIFY(!cmdDial->isEnabled());
            dial.txtNumber->selectAll();
            QTest::keyClicks(dial.txtNumber, "1-800-FLOWERS");
            for (int i = 0; i < codes.size(); ++i) {
                QTest::mouseClick(cmdDial, Qt::LeftButton);
                QCOMPARE(QApplication::activeModalWidget(), dialog); // still open
            }
            status = StatusText();
            QTest::mouseClick(dial.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
        });
        frmAutoDial::ShowModal(mOwner.get(), "555", "");
        QCOMPARE(desktop.dialed,
                 QStringList(codes.size(), "1-800-FLOWERS|AutoDial|1-800-FLOWERS|"));
        QCOMPARE(desktop.Shown(), shown);
        QCOMPARE(status, QString("Ready..."));
        QTRY_COMPARE(QApplication::focusWidget(), mField);
    }

private:
    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<QWidget> mOwner;
    QLineEdit* mField = nullptr;
};

QTEST_MAIN(tst_tools)
#include "tst_tools.moc"
