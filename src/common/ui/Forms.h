#pragma once

#include <QString>
#include <functional>

class QWidget;

// The loaded forms, by name. A form registers itself when it is created (its objectName is
// the program's form name, "frmRebate") and leaves when it is destroyed.
namespace Forms {
void Register(QWidget* form);
// A form that unloads leaves at once, even while its window is still being taken down.
void Unregister(QWidget* form);
QWidget* Find(const QString& name);
// How a form is created on first use: the form's module hands in a factory under the
// form's name; Load() returns the loaded form, or creates it with the factory (nullptr when
// there is no factory).
void SetFactory(const QString& name, std::function<QWidget*()> factory);
QWidget* Load(const QString& name);
} // namespace Forms

// True when a form of that name is loaded. Asking for "frmRebate" is how the program learns
// whether a record is open.
bool IsFormLoaded(const QString& name);

// Screen.MousePointer's two shapes. The override cursor is set at most once, so the two
// always balance.
enum class MousePointer { Default = 0, Hourglass = 11 };
void SetMousePointer(MousePointer pointer);
MousePointer CurrentMousePointer();

// Panel 3 of the main window's status bar, the program's status line. Resting text "Ready...".
void SetStatusText(const QString& text);
QString StatusText();
namespace StatusLine {
// The main window points the status line at its panel; without one the text is only kept.
void Attach(void (*setter)(const QString&));
} // namespace StatusLine

// A long action: the hourglass and a status text from construction until the guard goes,
// whichever way the action ends (exceptions included); then the normal pointer and the
// resting text. The status goes to the program's status line unless the form has one of its
// own.
class BusyState {
public:
    using StatusSetter = std::function<void(const QString&)>;
    explicit BusyState(const QString& status, StatusSetter setter = SetStatusText,
                       QString restingText = QStringLiteral("Ready..."));
    ~BusyState();
    BusyState(const BusyState&) = delete;
    BusyState& operator=(const BusyState&) = delete;

    // The pointer back to normal and the status line to the text given, for good.
    void Done(const QString& statusText);
    void Done() { Done(mRestingText); }
    // An error trap: the pointer back to normal and the status line to the text given (while
    // the error box shows); the resting text still follows when the guard goes.
    void Failed(const QString& statusText);

private:
    StatusSetter mSetter;
    QString mRestingText;
    bool mDone = false;
};

// Lets pending window messages run (DoEvents).
void DoEvents();
