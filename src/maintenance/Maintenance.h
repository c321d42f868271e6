#pragma once

class QDialog;
class QWidget;

// The maintenance and support commands as the main window and the splash reach them.
namespace Maintenance {
// The Options dialog, modal over the owner.
void ShowOptions(QWidget* owner);
// The about box, modal over the owner.
void ShowAbout(QWidget* owner);
// "Restore from Backup", modal over the owner.
void ShowRestore(QWidget* owner);
// The Tip of the Day, modal over the owner. Before start-up has finished it stays away when
// the user turned the start-up tips off.
void ShowTipOfTheDay(QWidget* owner);
// Runs the dialog modally and then gives the activation and the focus back to the window and
// the control that had them, as the user expects whatever the window manager does.
int RunModal(QDialog& dialog);
// The theme song, when the sound option is on and the machine can play it.
void PlayThemeSong();
} // namespace Maintenance
