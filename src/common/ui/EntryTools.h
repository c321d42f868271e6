#pragma once

#include <QString>
#include <functional>

class QWidget;

// The entry tools (calendar, calculator, week converter, zoom box, dialer) as the rebate form
// reaches them: the shell fills these hooks at start-up; an empty hook does nothing.
struct EntryTools {
    // The month grid for gsCalendarDate; on OK it writes the date into gCalendarTarget.
    std::function<void(QWidget* owner)> ShowCalendar;
    // The calculator seeded with gcCalculatorValue; on OK it types the result into the text
    // field that has the focus.
    std::function<void(QWidget* owner)> ShowCalculator;
    // Asks for a number of weeks and gives the Date Due that many weeks after dateSent, as
    // the default date text (M/d/yyyy); "" when the user cancels or the answer is refused.
    std::function<QString(const QString& dateSent)> ShowWeekConverter;
    // Edits the text of the control in a large box; "OK", "Canceled", or "" when the control
    // holds no text.
    std::function<QString(QWidget* control)> ShowZoomBox;
    // The dialer with a number and the called party's name (the name row hides when empty).
    std::function<void(QWidget* owner, const QString& number, const QString& name)> ShowDialer;
};

EntryTools& TheEntryTools();
