#pragma once

#include "common/ui/ImageList.h"
#include "common/ui/MainFrame.h"

#include <QMainWindow>
#include <QPoint>

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QTimer;
class MdiChild;
class StatusBar;
class Toolbar;

// The program's main window: the frame of the Switchboard and the rebate form, with the
// shared toolbar, the status bar and the frame menu. While a child that implements
// MdiChild is active, the menu bar shows that child's menus instead of the frame's.
// One instance; closing it ends the program.
class frmMDI : public QMainWindow, public MainFrame {
    Q_OBJECT
public:
    explicit frmMDI(QWidget* parent = nullptr);
    ~frmMDI() override;

    // The loaded main window, nullptr when there is none.
    static frmMDI* Instance();

    QMdiSubWindow* AddChild(QWidget* form) override;
    void AttachWindowList(QMenu* windowMenu) override;
    QMdiArea* Area() const override { return mdiArea; }
    Toolbar* MainToolbar() const override { return tbToolBar; }
    void SetToolbarVisible(bool visible) override;
    void SetStatusBarVisible(bool visible) override;
    void Run(Command command) override;
    void CloseWhenSwitchboardGone() override;
    void Exit() override;
    // The objectName of the active child form ("frmSwitchboard"), "" when there is none.
    QString ActiveFormName() const;

    void HideRebateButtons() override;
    void ShowRebateButtons() override;

    // The settings of the window, read at load and saved before the window closes.
    void MDIForm_Load();
    void MDIForm_QueryUnload();
    void MDIForm_Unload();

    QMdiArea* mdiArea;
    Toolbar* tbToolBar;
    StatusBar* sbStatusBar;
    // Enabled by the Switchboard once the user has confirmed the end of the program.
    QTimer* MDITimer;
    ImageList imlToolbarSGrey{16, ImageList::Tone::Grey};
    ImageList imlToolbarLGrey{32, ImageList::Tone::Grey};
    ImageList imlToolbarLarge{32};
    ImageList imlToolbarSmall{16};

    QMenu* mnuFile;
    QAction* mnuFileRestore;
    QAction* mnuFileExit;
    QMenu* mnuView;
    QAction* mnuViewToolbar;
    QAction* mnuViewStatusBar;
    QAction* mnuViewOptions;
    QMenu* mnuWindow;
    QAction* mnuTileHorizontally;
    QAction* mnuTileVertically;
    QAction* mnuCascade;
    QMenu* mnuHelp;
    QAction* mnuHelpContents;
    QAction* mnuSearchForHelpOn;
    QAction* mnuHelpAbout;
    QAction* mnuTipOfTheDay;
    QMenu* mnuTbPopup;
    QAction* mnuTbPopupLarge;
    QAction* mnuTbPopupSmall;
    QAction* mnuTbPopupText;

public Q_SLOTS:
    void tbToolBar_ButtonClick(const QString& key);
    void tbToolBar_MouseUp(int button, const QPoint& globalPos);
    void mnuTbPopupLarge_Click();
    void mnuTbPopupSmall_Click();
    void mnuTbPopupText_Click();
    void mnuViewToolbar_Click();
    void mnuViewStatusBar_Click();
    void mnuViewOptions_Click();
    void mnuFileRestore_Click();
    void mnuFileExit_Click();
    void mnuHelpContents_Click();
    void mnuSearchForHelpOn_Click();
    void mnuHelpAbout_Click();
    void mnuTipOfTheDay_Click();
    void MDITimer_Timer();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void CreateMenus();
    void CreateToolbar();
    void ChooseButtonSize(bool large);
    void ShowMenusOf(QMdiSubWindow* child);
    void PrintClicked();
    // The active child, when it takes the main window's record commands.
    MdiChild* ActiveChild() const;
    bool NoHelpBox();

    QList<QMenu*> mOwnMenus;
    bool mbClosing = false;
};
