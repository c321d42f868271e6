#pragma once

#include <QDate>
#include <QDialog>

class QLabel;
class QPushButton;

// The month grid a date field opens on "c". It starts on gsCalendarDate (today when that is
// empty), moves by day, month and year, marks today in red and the chosen day with a frame,
// and on OK writes the chosen day into gCalendarTarget as "mm/dd/yyyy". gsCalendarDate holds
// the result afterwards: the date on OK, "" on Cancel.
//
// Keys: the arrows move a day or a week, Page Up and Page Down a month, with Ctrl a year;
// Home and End go to the first and last day of the month; Enter is OK, Escape Cancel.
class frmCalendar : public QDialog {
    Q_OBJECT
public:
    explicit frmCalendar(QWidget* parent = nullptr);

    // The form shown modally, as the fields open it.
    static void ShowModal(QWidget* owner);

    QDate ChosenDate() const { return msDate; }

    void cmdMonthBack_Click() { MoveTo(msDate.addMonths(-1)); }
    void cmdMonthForward_Click() { MoveTo(msDate.addMonths(1)); }
    void cmdYearBack_Click() { MoveTo(msDate.addYears(-1)); }
    void cmdYearAhead_Click() { MoveTo(msDate.addYears(1)); }
    void cmdToday_Click();
    void cmdReset_Click();
    void Label3_Click(int index);
    void cmdOK_Click();
    void cmdCancel_Click();

    // Closing by any means but OK hands back "".
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Moves the chosen day; a date outside the years 100 to 9999 is refused and nothing moves.
    void MoveTo(const QDate& date);
    void FillMonth();
    void MarkCells();
    void ShowCaptions();
    bool MoveKey(int key, Qt::KeyboardModifiers modifiers);

    QDate msDate;  // the chosen date
    QDate msFirst; // the first day of the shown month
    QLabel* lblMonth = nullptr;
    QList<QLabel*> Label3; // the 37 day cells, seven to a row from Sunday
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
};
