#pragma once

#include <QDialog>
#include <QPointer>

class QLabel;
class QPushButton;

// The four-function calculator a money field opens on "c", and the main toolbar's Calc
// button. It starts from gcCalculatorValue (typed in as if keyed) and on OK types its result
// into the text field that had the focus when it opened, as key events, so the field's own
// key rules apply.
//
// Keys: digits, "+", "-", "*", "/", "=" or Enter, "%", ".", "c" or Ctrl+L for C, Delete for
// CE, Backspace drops the last digit typed, Escape closes without typing anything. The letters
// "j", "k", "m", "n", "o" act as "X", "+", "-", ".", "/" and "p" opens the help.
class frmCalculator : public QDialog {
    Q_OBJECT
public:
    explicit frmCalculator(QWidget* parent = nullptr);

    static void ShowModal(QWidget* owner);

    QString Readout() const;

    void Number_Click(int index);
    void Operator_Click(int index); // 0 "/", 1 "+", 2 "X", 3 "-", 4 "="
    void Decimal_Click();
    void Percent_Click();
    void CancelEntry_Click();
    void Cancel_Click();
    void Backspace_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    // A typed character, by its code, as the form sees it before its buttons; false when the
    // key is not the calculator's.
    bool Form_KeyPress(int keyAscii);

    // Closing by any means hands back no value.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
    void TypeNumber(double value);
    void ShowNumber(double value);

    double Op1 = 0;
    double Op2 = 0;
    bool DecimalFlag = false;
    int NumOps = 0;
    QString LastInput;
    QString OpFlag;

    QLabel* lblReadout = nullptr;
    QList<QPushButton*> Operator;
    QPointer<QWidget> mTarget; // the control that had the focus when the form opened
};
