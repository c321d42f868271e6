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

// Screen.MousePointer: 11 shows the hourglass, 0 restores the normal pointer. The override
// cursor is set at most once, so the two always balance.
void SetMousePointer(int pointer);
int MousePointer();

// Panel 3 of the main window's status bar, the program's status line. Resting text "Ready...".
void SetStatusText(const QString& text);
QString StatusText();
namespace StatusLine {
// The main window points the status line at its panel; without one the text is only kept.
void Attach(void (*setter)(const QString&));
} // namespace StatusLine

// Lets pending window messages run (DoEvents).
void DoEvents();
