#pragma once

#include <QList>
#include <functional>

class QMdiArea;
class QMenu;

// A child window of the main window that brings menus of its own: while it is the active
// child, the main window's menu bar shows these menus in place of its own.
class MdiChild {
public:
    virtual ~MdiChild() = default;
    virtual QList<QMenu*> Menus() const = 0;
};

// Lists the open child windows of the area at the end of a Window menu ("&1 Switchboard", the
// active one checked) each time the menu opens; choosing an entry activates that child. The
// area is looked up each time, so a form may attach its menu before it stands in the frame;
// nullptr lists nothing.
void AttachWindowList(QMenu* windowMenu, std::function<QMdiArea*()> area);
