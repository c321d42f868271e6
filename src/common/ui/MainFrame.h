#pragma once

class QMdiArea;
class QRect;
class QMdiSubWindow;
class QMenu;
class QWidget;
class Toolbar;

// What the main window offers the windows inside it. The shell's frmMDI implements it; a
// feature reaches it through Instance() (nullptr while there is no main window) and never
// through the main window's class or its controls by name.
class MainFrame {
public:
    // The main window's own commands that a child's menus repeat.
    enum class Command {
        Options,
        About,
        TipOfTheDay,
        HelpContents,
        SearchForHelpOn,
        TileHorizontally,
        TileVertically,
        Cascade,
        RestoreFromBackup,
    };

    static MainFrame* Instance();

    // Puts a form into the frame as a child window (once; a second call returns the same
    // sub-window). The caller shows it. Closing the child destroys the form.
    virtual QMdiSubWindow* AddChild(QWidget* form) = 0;
    // Lists the open child windows at the end of a child's Window menu each time it opens.
    virtual void AttachWindowList(QMenu* windowMenu) = 0;
    virtual QMdiArea* Area() const = 0;
    // The shared toolbar (tbToolBar) whose buttons the children enable and disable.
    virtual Toolbar* MainToolbar() const = 0;
    virtual void SetToolbarVisible(bool visible) = 0;
    virtual void SetStatusBarVisible(bool visible) = 0;
    // Buttons 3 and 6 to 11 go (Save, Delete, Cut, Copy, Paste and two separators).
    virtual void HideRebateButtons() = 0;
    // Buttons 3 and 5 to 11 come back; Print is disabled while the open rebate form's record
    // has never been saved.
    virtual void ShowRebateButtons() = 0;
    virtual void Run(Command command) = 0;
    // The user has confirmed the end of the program: the frame closes once the Switchboard
    // has gone (MDITimer).
    virtual void CloseWhenSwitchboardGone() = 0;
    // Closes the frame, which ends the program after its questions.
    virtual void Exit() = 0;

protected:
    MainFrame();
    virtual ~MainFrame();
    MainFrame(const MainFrame&) = delete;
    MainFrame& operator=(const MainFrame&) = delete;
};

// Whether a child window with this frame geometry, read from the settings, can be seen and
// reached in the room (the client area of the main window): its title bar lies inside it and it
// is no larger than the screen. A window that fails is placed at its defaults instead.
bool IsReachable(const QRect& frame, const QRect& room);
