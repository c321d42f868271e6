#pragma once

#include <QList>

class QMenu;

// A child window of the main window that brings menus of its own: while it is the active
// child, the main window's menu bar shows these menus in place of its own.
class MdiChild {
public:
    virtual ~MdiChild() = default;
    virtual QList<QMenu*> Menus() const = 0;
};
