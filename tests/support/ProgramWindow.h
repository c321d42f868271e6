#pragma once

#include <QSize>
#include <QString>

class frmMDI;
class frmSwitchboard;
class ListView;
class QMdiSubWindow;

// The main window with the Switchboard in it, shown as after start-up, over whatever
// gDatabase holds. It goes without asking any question at the end of the test.
class ProgramWindow {
public:
    ProgramWindow();
    ~ProgramWindow();
    ProgramWindow(const ProgramWindow&) = delete;
    ProgramWindow& operator=(const ProgramWindow&) = delete;

    frmMDI& Mdi() { return *mMdi; }
    frmSwitchboard& Switchboard() { return *mSwitchboard; }
    // The Switchboard's child window in the main window.
    QMdiSubWindow& Frame() { return *mFrame; }

    // Resizes the Switchboard's child window and lets the layouts follow.
    void ResizeSwitchboard(const QSize& size);
    // Clicks the tab with that caption.
    void ClickTab(const QString& caption);
    // The caption of the selected tab.
    QString CurrentTab() const;
    // Clicks the row with that 1-based index in the list's current view.
    static void ClickRow(ListView* lv, int index);

private:
    frmMDI* mMdi;
    frmSwitchboard* mSwitchboard;
    QMdiSubWindow* mFrame;
};
