#pragma once

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;

// A large box for the text of one control. OK writes an edited text back; Cancel leaves the
// control as it was. The form only records which button closed it (txtExitState "1" for OK,
// "2" for Cancel) and hides; DisplayZoomBox reads it.
class frmZoomBox : public QDialog {
    Q_OBJECT
public:
    explicit frmZoomBox(QWidget* parent = nullptr);

    QPlainTextEdit* txtText = nullptr;
    QLineEdit* txtTextDup = nullptr;   // hidden: the text as it came in
    QLineEdit* txtExitState = nullptr; // hidden

    void btnOK_Click();
    void btnCancel_Click();
    void reject() override { btnCancel_Click(); }
};

// Shows the text of the control (a line edit, an editable combo box or a text edit) in the
// zoom box; "OK", "Canceled", or "" when the control is of no such kind. Only an edited text
// is written back, so OK alone raises no change.
QString DisplayZoomBox(QWidget* control);

// The week converter of Date Due: asks for a number of weeks and gives the date that many
// weeks after dateSent in the default date text (M/d/yyyy). "" when the answer is empty
// (Cancel) or refused with its message.
QString WeekConverter(const QString& dateSent);
