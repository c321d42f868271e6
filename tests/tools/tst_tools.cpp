#include "Fixture.h"
#include "Modal.h"
#include "common/core/Globals.h"
#include "common/ui/Forms.h"
#include "tools/frmAutoDial.h"
#include "tools/frmCalculator.h"
#include "tools/frmCalendar.h"
#include "tools/frmZoomBox.h"

#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

// The entry tools on their own, driven by keys and clicks (tst_entrytools runs the calendar and
// the calculator over the rebate form's fields). The zoom box and the dialer run as real modal
// windows over a field that must have the focus again afterwards.
class tst_tools : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        mOwner = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(mOwner.get());
        mField = new QLineEdit(mOwner.get());
        mField->setObjectName(QStringLiteral("field"));
        layout->addWidget(mField);
        layout->addWidget(new QPushButton(QStringLiteral("Other"), mOwner.get()));
        mOwner->show();
        QApplication::setActiveWindow(mOwner.get());
        mField->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), mField);
    }
    void cleanup() {
        mOwner.reset();
        mFixture.reset();
    }

    // start date, keys or buttons in order, the chosen date afterwards.
    void calendarMoves_data() {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QStringList>("moves");
        QTest::addColumn<QString>("expected");
        const struct {
            const char *name, *start, *moves, *expected;
        } rows[] = {
            {"month back from Jan 31", "01/31/2026", "cmdMonthBack", "12/31/2025"},
            {"month back from Mar 31, leap year", "03/31/2024", "cmdMonthBack", "02/29/2024"},
            {"year ahead from Feb 29", "02/29/2024", "cmdYearAhead", "02/28/2025"},
            {"year back and month forward", "06/15/2026", "cmdYearBack cmdMonthForward",
             "07/15/2025"},
            {"arrows move days and weeks", "11/23/2026", "Right Right Down Left Up", "11/24/2026"},
            {"arrow over the month end", "11/30/2026", "Right", "12/01/2026"},
            {"page keys move months", "11/23/2026", "PgDown PgDown PgUp", "12/23/2026"},
            {"ctrl page keys move years", "11/23/2026", "Ctrl+PgUp", "11/23/2025"},
            {"home and end", "02/10/2027", "End", "02/28/2027"},
            {"nothing past 12/31/9999", "12/31/9999", "Right cmdYearAhead cmdMonthForward",
             "12/31/9999"},
            {"nothing before the year 100", "01/01/0100", "Left cmdMonthBack", "01/01/0100"},
            {"today", "03/05/2020", "cmdToday", "11/23/2026"},
            {"reset goes back to the date handed in", "03/05/2020", "cmdYearAhead cmdReset",
             "03/05/2020"},
        };
        for (const auto& row : rows)
            QTest::newRow(row.name)
                << row.start << QString(row.moves).split(' ', Qt::SkipEmptyParts) << row.expected;
    }
    void calendarMoves() {
        QFETCH(QString, start);
        QFETCH(QStringList, moves);
        QFETCH(QString, expected);
        gsCalendarDate = start;
        frmCalendar form(mOwner.get());
        form.show();
        QWidget* grid = form.findChild<QWidget*>(QStringLiteral("fraCalendar"));
        for (const QString& move : moves) {
            if (move.startsWith(QLatin1String("cmd"))) {
                QTest::mouseClick(form.findChild<QPushButton*>(move), Qt::LeftButton);
                continue;
            }
            const QKeyCombination key = QKeySequence(move)[0];
            QTest::keyClick(grid, key.key(), key.keyboardModifiers());
        }
        QCOMPARE(form.ChosenDate().toString(QStringLiteral("MM/dd/yyyy")), expected);
    }

    // A 31-day month that starts on a Saturday fills cells 6 to 36; today is red, the chosen
    // day framed; a click moves only the frame.
    void calendarGrid() {
        gsCalendarDate = QStringLiteral("03/10/2025");
        frmCalendar form(mOwner.get());
        form.show();
        QCOMPARE(form.windowTitle(), QStringLiteral("Calendar - March 10, 2025"));
        QCOMPARE(form.findChild<QLabel*>(QStringLiteral("lblMonth"))->text(),
                 QStringLiteral("MARCH"));
        auto cell = [&](int i) {
            return form.findChild<QLabel*>(QStringLiteral("Label3_%1").arg(i));
        };
        for (int i = 0; i < 37; ++i)
            QCOMPARE(cell(i)->isVisible(), i >= 6);
        QCOMPARE(cell(6)->text(), QStringLiteral("1"));
        QCOMPARE(cell(36)->text(), QStringLiteral("31"));
        QVERIFY(cell(15)->styleSheet().contains(QLatin1String("solid black")));
        QTest::mouseClick(cell(20), Qt::LeftButton);
        QCOMPARE(form.ChosenDate(), QDate(2025, 3, 15));
        QVERIFY(!cell(15)->styleSheet().contains(QLatin1String("solid black")));
        QVERIFY(cell(20)->styleSheet().contains(QLatin1String("solid black")));
        // Today's cell in today's month: red.
        QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdToday")), Qt::LeftButton);
        QLabel* today = form.findChild<QLabel*>(QStringLiteral("Label3_%1").arg(22 + 0));
        QCOMPARE(today->text(), QStringLiteral("23")); // November 2026 starts on a Sunday
        QVERIFY(today->styleSheet().contains(QLatin1String("color: red")));
        QVERIFY(!cell(21)->styleSheet().contains(QLatin1String("color: red")));
    }

    // seed, keys typed, display afterwards, message boxes.
    void calculatorKeys_data() {
        QTest::addColumn<double>("seed");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("readout");
        QTest::addColumn<QString>("box");
        const struct {
            const char* name;
            double seed;
            const char *keys, *readout, *box;
        } rows[] = {
            {"seed shows as typed", 12.5, "", "12.5", ""},
            {"empty seed", 0, "", "0.", ""},
            {"negative seed", -5, "", "-5.", ""},
            {"chain", 0, "2+3*4=", "20", ""},
            {"divide by zero keeps the first", 0, "5/0=", "5", "Calculator|Can't divide by zero"},
            {"percent", 0, "200*5%=", "10", ""},
            {"negative second operand", 0, "7*-2=", "-14", ""},
            {"C goes back to the seed", 12.5, "+9C", "12.5", ""},
            {"keypad letters", 0, "6k2j3=", "24", ""},
            {"decimals", 0, ".5+.25=", "0.75", ""},
            {"backspace drops a digit", 0, "123\b", "12.", ""},
            {"backspace in the decimals", 0, "1.25\b", "1.2", ""},
        };
        for (const auto& row : rows)
            QTest::newRow(row.name) << row.seed << row.keys << row.readout << row.box;
    }
    void calculatorKeys() {
        QFETCH(double, seed);
        QFETCH(QString, keys);
        QFETCH(QString, readout);
        QFETCH(QString, box);
        gcCalculatorValue = Currency::FromDouble(seed);
        frmCalculator form(mOwner.get());
        form.show();
        QTest::keyClicks(form.findChild<QPushButton*>(QStringLiteral("Number_5")), keys);
        QCOMPARE(form.Readout(), readout);
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.isEmpty() ? QString() : boxes.first().title + '|' + boxes.first().prompt,
                 box);
    }

    // The zoom box as a real modal window: what comes back, what the field holds, whether the
    // field heard of a change.
    void zoomBox_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("changes");
        const auto row = [](const char* name, const char* typed, const char* button,
                            const char* result, const char* field, int changes) {
            QTest::newRow(name) << QString(typed) << QString(button) << QString(result)
                                << QString(field) << changes;
        };
        row("OK writes an edit", " and more", "btnOK", "OK", "Remark and more", 1);
        row("OK without an edit writes nothing", "", "btnOK", "OK", "Remark", 0);
        row("Cancel leaves the field", "xyz", "btnCancel", "Canceled", "Remark", 0);
    }
    void zoomBox() {
        QFETCH(QString, typed);
        QFETCH(QString, button);
        QFETCH(QString, result);
        QFETCH(QString, field);
        QFETCH(int, changes);
        mField->setText(QStringLiteral("Remark"));
        QSignalSpy changed(mField, &QLineEdit::textChanged);
        WhileModal("frmZoomBox", nullptr, [&](QWidget* dialog) {
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Zoom"));
            auto* text = dialog->findChild<QPlainTextEdit*>(QStringLiteral("txtText"));
            QCOMPARE(QApplication::focusWidget(), text);
            QCOMPARE(text->textCursor().position(), 6); // the caret at the end
            QTest::keyClicks(text, typed);
            QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
        });
        QCOMPARE(DisplayZoomBox(mField), result);
        QCOMPARE(mField->text(), field);
        QCOMPARE(changed.count(), changes);
        QTRY_COMPARE(QApplication::focusWidget(), mField);
    }

    // answer, the date afterwards ("" when nothing changes), the message box.
    void weekConverter_data() {
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("due");
        QTest::addColumn<bool>("box");
        const auto row = [](const char* name, const char* sent, const char* answer, const char* due,
                            bool box) {
            QTest::newRow(name) << QString(sent) << QString(answer) << QString(due) << box;
        };
        row("half days round to even", "12/01/2025", "1.5", "12/11/2025", false);
        row("letters", "12/01/2025", "soon", "", true);
        row("too many days", "12/01/2025", "5000", "", true);
        row("past the year 9999", "12/01/9999", "6", "", true);
    }
    void weekConverter() {
        QFETCH(QString, sent);
        QFETCH(QString, answer);
        QFETCH(QString, due);
        QFETCH(bool, box);
        auto& desktop = mFixture->Desktop();
        desktop.SetNextInput(answer);
        QCOMPARE(WeekConverter(sent), due);
        QCOMPARE(
            desktop.inputPrompts,
            QStringList{"Enter the number of weeks from the Date Sent until the rebate is due:"});
        QCOMPARE(desktop.boxes.size(), box ? 1 : 0);
        if (box)
            QCOMPARE(desktop.boxes.first().prompt,
                     QStringLiteral("Please enter a number such as 6 or 8."));
    }

    // The dial button follows the number; each call reports its code and leaves the dialog open.
    void dialer_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("box");
        const QString call = "1-800-FLOWERS|AutoDial|1-800-FLOWERS|";
        const QString error = "Error dialing number : ";
        QTest::newRow("with a name") << "Acme Rebate" << 0 << "1-800-FLOWERS|AutoDial|Acme Rebate|"
                                     << "";
        QTest::newRow("without a name the number is the party") << "" << 0 << call << "";
        QTest::newRow("no dialing program")
            << "" << -2 << call
            << error + "No Windows Telephony dialing application is running and none could be "
                       "started.";
        QTest::newRow("queue full")
            << "" << -3 << call
            << error + "The queue of pending Windows Telephony dialing requests is full.";
        QTest::newRow("invalid") << "" << -4 << call << error + "The phone number is invalid.";
        QTest::newRow("other") << "" << -7 << call << error + "Unknown error.";
    }
    void dialer() {
        QFETCH(QString, name);
        QFETCH(int, code);
        QFETCH(QString, call);
        QFETCH(QString, box);
        auto& desktop = mFixture->Desktop();
        desktop.SetNextDialResult(code);
        QString status;
        WhileModal("frmAutoDial", nullptr, [&](QWidget* dialog) {
            auto& dial = static_cast<frmAutoDial&>(*dialog);
            QCOMPARE(dial.lblName->isVisible(), !name.isEmpty());
            auto* cmdDial = dial.findChild<QPushButton*>(QStringLiteral("cmdDial"));
            QCOMPARE(QApplication::focusWidget(), dial.txtNumber);
            dial.txtNumber->selectAll();
            QTest::keyClicks(dial.txtNumber, QStringLiteral("   "));
            QVERIFY(!cmdDial->isEnabled());
            dial.txtNumber->selectAll();
            QTest::keyClicks(dial.txtNumber, QStringLiteral("1-800-FLOWERS"));
            QVERIFY(cmdDial->isEnabled());
            QTest::mouseClick(cmdDial, Qt::LeftButton);
            QCOMPARE(QApplication::activeModalWidget(), dialog); // still open
            status = StatusText();
            QTest::mouseClick(dial.findChild<QPushButton*>(QStringLiteral("cmdCancel")),
                              Qt::LeftButton);
        });
        frmAutoDial::ShowModal(mOwner.get(), QStringLiteral("555"), name);
        QCOMPARE(desktop.dialed, QStringList{call});
        QCOMPARE(desktop.boxes.isEmpty() ? QString() : desktop.boxes.first().prompt, box);
        if (!box.isEmpty())
            QCOMPARE(desktop.boxes.first().title, QStringLiteral("Dialing Error"));
        QCOMPARE(status, QStringLiteral("Ready..."));
        QTRY_COMPARE(QApplication::focusWidget(), mField);
    }

private:
    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<QWidget> mOwner;
    QLineEdit* mField = nullptr;
};

QTEST_MAIN(tst_tools)
#include "tst_tools.moc"
