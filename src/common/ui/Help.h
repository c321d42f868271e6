#pragma once

#include <QString>

class HelpWindow;
class QObject;
class QWidget;

// App.HelpFile: the help file's path, set at start-up to "vantry.hlp" beside the program.
// The commands below test it as the program always has: empty means "no help".
namespace App {
QString HelpFile();
void SetHelpFile(const QString& path);
} // namespace App

// The program's help: HTML topics compiled into the resources (":/help/<number>.html" and
// ":/help/contents.html"), keyed by the help context numbers that menus and controls carry
// in their "HelpContextID" property, shown in one HelpWindow.
namespace Help {
inline constexpr char kContextProperty[] = "HelpContextID";

// True when App.HelpFile is set and the compiled topics are there.
bool Available();
// The contents page (HELP_FINDER).
void ShowContents();
// The search field, focused, over the list of topics (HELP_PARTIALKEY with no key).
void ShowSearch();
// The topic of a context number; the contents page for a number without a topic.
void ShowTopic(int context);
// Closes the help window (HELP_QUIT).
void Quit();
// The open help window, nullptr when none is open.
HelpWindow* Window();

// The context number for a widget: its own "HelpContextID" or that of the nearest parent
// that has one; 0 when none has.
int ContextOf(const QObject* object);
// F1 anywhere in the program opens the topic of the menu entry under the highlight or of the
// focused control (ContextOf), the contents page when it has no number. Installs once.
void InstallF1Handler();
} // namespace Help
