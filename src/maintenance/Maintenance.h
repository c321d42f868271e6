#pragma once

class QWidget;

// The maintenance and support commands as the main window and the splash reach them.
namespace Maintenance {
// The Options dialog, modal over the owner.
void ShowOptions(QWidget* owner);
// The about box, modal over the owner.
void ShowAbout(QWidget* owner);
// The Tip of the Day, modal over the owner. Before start-up has finished it stays away when
// the user turned the start-up tips off.
void ShowTipOfTheDay(QWidget* owner);
// The theme song, when the sound option is on and the machine can play it.
void PlayThemeSong();
} // namespace Maintenance
