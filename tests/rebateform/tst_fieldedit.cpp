#include "FieldEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

// The field edit on its own: one-step swap undo, the old key events and the validate veto.
class tst_fieldedit : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void undo_data();
    void undo();
    void keyPressRewrites_data();
    void keyPressRewrites();
    void vetoKeepsFocus_data();
    void vetoKeepsFocus();
    void acceptedMoveGoesOn();

private:
    QWidget* mForm = nullptr;
    FieldEdit* mFirst = nullptr;
    FieldEdit* mSecond = nullptr;
    QPushButton* mButton = nullptr;
};

void tst_fieldedit::init() {
    mForm = new QWidget;
    mFirst = new FieldEdit(5, "DateSent", "Date rebate was mailed...", mForm);
    mSecond = new FieldEdit(6, "PostagePrice", "Cost of mailing rebate...", mForm);
    mButton = new QPushButton("&OK", mForm);
    auto* layout = new QVBoxLayout(mForm);
    layout->addWidget(mFirst);
    layout->addWidget(mSecond);
    layout->addWidget(mButton);
    mForm->show();
    QApplication::setActiveWindow(mForm);
    QVERIFY(QTest::qWaitForWindowActive(mForm));
    mFirst->setFocus();
    QTRY_VERIFY(mFirst->hasFocus());
}

void tst_fieldedit::cleanup() {
    delete mForm;
    mForm = nullptr;
}

// Steps: "code:<text>" sets the text by code, "type:<text>" types it, "undo" presses Escape
// through the undo the form wires to it, "ctrlz" presses Ctrl+Z, "home" moves the caret.
void tst_fieldedit::undo_data() {
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("canUndo");
    QTest::newRow("typing undone") << QStringList{"code:ab", "type:cd", "undo"} << "ab" << true;
    QTest::newRow("undo twice restores")
        << QStringList{"code:ab", "type:cd", "undo", "undo"} << "abcd" << true;
    QTest::newRow("code text leaves nothing")
        << QStringList{"type:xy", "code:12/01/2026", "undo"} << "12/01/2026" << false;
    QTest::newRow("typing after code") << QStringList{"code:1", "type:23", "undo"} << "1" << true;
    QTest::newRow("one step only") << QStringList{"type:a", "undo", "type:b", "undo"} << "" << true;
    QTest::newRow("ctrl+z swaps") << QStringList{"type:ab", "ctrlz", "ctrlz"} << "ab" << true;
    QTest::newRow("backspace is an edit")
        << QStringList{"code:abc", "type:\b", "undo"} << "abc" << true;
}

void tst_fieldedit::undo() {
    QFETCH(QStringList, steps);
    QFETCH(QString, expected);
    QFETCH(bool, canUndo);
    mFirst->KeyPress = [](FieldEdit& field, int& keyAscii) {
        if (keyAscii == 27) {
            keyAscii = 0;
            field.Undo();
        }
    };
    for (const QString& step : steps) {
        if (step.startsWith("code:"))
            mFirst->setText(step.mid(5));
        else if (step.startsWith("type:") && step.mid(5) == "\b")
            QTest::keyClick(mFirst, Qt::Key_Backspace);
        else if (step.startsWith("type:"))
            QTest::keyClicks(mFirst, step.mid(5));
        else if (step == "undo")
            QTest::keyClick(mFirst, Qt::Key_Escape);
        else if (step == "ctrlz")
            QTest::keyClick(mFirst, Qt::Key_Z, Qt::ControlModifier);
    }
    QCOMPARE(mFirst->text(), expected);
    QCOMPARE(mFirst->CanUndo(), canUndo);
}

void tst_fieldedit::keyPressRewrites_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("swallowed") << "12"
                               << "";
    QTest::newRow("replaced") << "ab"
                              << "AB";
    QTest::newRow("passed") << "-/"
                            << "-/";
    QTest::newRow("mixed") << "a1-b2"
                           << "A-B";
}

void tst_fieldedit::keyPressRewrites() {
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    QList<int> seen;
    mFirst->KeyPress = [&seen](FieldEdit&, int& keyAscii) {
        seen.append(keyAscii);
        if (keyAscii >= '0' && keyAscii <= '9')
            keyAscii = 0;
        else if (keyAscii >= 'a' && keyAscii <= 'z')
            keyAscii -= 32;
        else if (keyAscii == 22)
            keyAscii = 0; // Ctrl+V refused, as in a date field
    };
    QApplication::clipboard()->setText("pasted");
    QTest::keyClicks(mFirst, typed);
    QTest::keyClick(mFirst, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(mFirst->text(), expected);
    QCOMPARE(seen.size(), typed.size() + 1);
    QCOMPARE(seen.last(), 22); // Ctrl+V arrives as its control character
}

void tst_fieldedit::vetoKeepsFocus_data() {
    QTest::addColumn<QString>("how");
    QTest::newRow("click on a button") << "click";
    QTest::newRow("Tab") << "tab";
    QTest::newRow("click on a field") << "field";
}

void tst_fieldedit::vetoKeepsFocus() {
    QFETCH(QString, how);
    int validations = 0;
    int gotFocus = 0;
    mFirst->Validate = [&validations](FieldEdit& field, bool& cancel) {
        ++validations;
        cancel = field.text() == "13/45";
    };
    mFirst->GotFocus = [&gotFocus](FieldEdit&) {
        ++gotFocus;
    };
    mSecond->GotFocus = [&gotFocus](FieldEdit&) {
        ++gotFocus;
    };
    QSignalSpy clicked(mButton, &QPushButton::clicked);
    QTest::keyClicks(mFirst, "13/45");
    if (how == "click")
        QTest::mouseClick(mButton, Qt::LeftButton);
    else if (how == "tab")
        QTest::keyClick(mFirst, Qt::Key_Tab);
    else
        QTest::mouseClick(mSecond, Qt::LeftButton);
    QCOMPARE(validations, 1);
    QVERIFY(mFirst->hasFocus());
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(gotFocus, 0);
    QCOMPARE(mFirst->text(), QString("13/45"));
    // Once the field is fixed the same click goes through.
    mFirst->setText("12/01/2026");
    if (how == "click") {
        QTest::mouseClick(mButton, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
        QVERIFY(mButton->hasFocus());
    }
}

void tst_fieldedit::acceptedMoveGoesOn() {
    int validations = 0;
    mFirst->Validate = [&validations](FieldEdit&, bool&) {
        ++validations;
    };
    QTest::keyClick(mFirst, Qt::Key_Tab);
    QTRY_VERIFY(mSecond->hasFocus());
    QCOMPARE(validations, 1);
    // Leaving the window isn't a move within the form: nothing is validated.
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    QVERIFY(QTest::qWaitForWindowActive(&other));
    mSecond->Validate = [&validations](FieldEdit&, bool&) {
        ++validations;
    };
    QApplication::setActiveWindow(mForm);
    QVERIFY(QTest::qWaitForWindowActive(mForm));
    QCOMPARE(validations, 1);
}

QTEST_MAIN(tst_fieldedit)
#include "tst_fieldedit.moc"
