#pragma once

#include <QList>
#include <QString>
#include <functional>

class QMdiArea;
class QMenu;

// A child window of the main window. While it is the active child, the main window's menu
// bar shows its menus in place of its own, and the main window's record commands (the
// toolbar's Save, Delete, Cut, Copy, Paste, Undo and Print) act on it. A child leaves out
// what it doesn't do: by default a command can't run and does nothing.
class MdiChild {
public:
    virtual ~MdiChild() = default;
    virtual QList<QMenu*> Menus() const = 0;

    virtual bool CanSave() const { return false; }
    virtual void Save() {}
    virtual bool CanDelete() const { return false; }
    virtual void Delete() {}
    virtual bool CanCut() const { return false; }
    virtual void Cut() {}
    virtual bool CanCopy() const { return false; }
    virtual void Copy() {}
    virtual bool CanPaste() const { return false; }
    virtual void Paste() {}
    virtual bool CanUndo() const { return false; }
    virtual void Undo() {}
    virtual bool CanPrint() const { return false; }
    virtual void Print() {}
};

// The rebate form as the other windows see it: whether it holds unsaved changes, which record
// it shows ("" before the first save), and how to close it or bring it to the front.
class RecordForm {
public:
    virtual ~RecordForm() = default;
    virtual bool RecordChanged() const = 0;
    virtual QString RebateID() const = 0;
    virtual void Unload() = 0;
    virtual void ZOrder() = 0;

    // The open rebate form, nullptr when none is loaded.
    static RecordForm* Open();
    // Closes the open rebate form so that a command can go ahead. A form with unsaved changes
    // stays and comes to the front, and the user is asked to save it "before attempting to
    // <attempting>": then false.
    static bool CloseUnlessChanged(const QString& attempting);
    // Opens the rebate form on a new record (gbNewRecord) or on the selected row of the
    // Switchboard's current list; the form registers how it is made (Forms::SetFactory).
    static void Show();
};

// Lists the open child windows of the area at the end of a Window menu ("&1 Switchboard", the
// active one checked) each time the menu opens; choosing an entry activates that child. The
// area is looked up each time, so a form may attach its menu before it stands in the frame;
// nullptr lists nothing.
void AttachWindowList(QMenu* windowMenu, std::function<QMdiArea*()> area);
