#pragma once

#include <QString>

class QWidget;

// One running copy per user and program folder. The first copy listens on a local socket
// named after both in the user's runtime folder; a later copy that reaches it hands over the
// main window's title, and the first copy brings that window forward. The first copy also holds
// a lock file beside the store, so that no second copy ever opens it.

// True when another copy runs (it has been asked to show itself); the caller then ends at
// once. False when this process is the first one, and from now on listens for later ones.
bool CheckPrevInstance();
// The first top-level window whose caption begins with the title (any case), or nullptr.
QWidget* FindWindowByTitlePrefix(const QString& title);
// Restores the window of that title when minimised and brings it to the front.
QWidget* ActivatePrevInstance(const QString& title);

namespace PrevInstance {
// The name of the local socket for this user and program folder.
QString ServerName();
// The lock file beside the store.
QString LockPath();
// Stops listening and drops the lock (a test's program ends without ending the process).
void Release();
} // namespace PrevInstance
