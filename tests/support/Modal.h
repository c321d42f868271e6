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
