#pragma once

#include <QString>
#include <functional>

class QWidget;

// Runs the action on the next modal window that comes up (found through
// QApplication::activeModalWidget()), from the event loop of that window's own exec(): the
// test then types and clicks into the real dialog.
void WhenModal(std::function<void(QWidget* dialog)> action);

// Same, for a window of that objectName; modal windows of other names that come up first
// are left alone.
void WhenModal(const QString& name, std::function<void(QWidget* dialog)> action);

// Runs the check inside the modal window of that objectName that the event loop finds on its next
// turn, once the window is active as a window manager would make it, then closes it if the check
// left it open. *opened, when given, tells afterwards whether a modal window came.
void WhileModal(const QString& name, bool* opened, std::function<void(QWidget* dialog)> whileOpen);
