#include "shell/frmMDI.h"

#include "app/AppSettings.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/Settings.h"
#include "common/core/Twips.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/MdiChild.h"
#include "common/ui/StatusBar.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "maintenance/Maintenance.h"
#include "shell/modMain.h"
#include "tools/frmAutoDial.h"
#include "tools/frmCalculator.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalBlocker>
#include <QTimer>

namespace {
frmMDI* gInstance = nullptr;

// The pictures every toolbar image list holds; the large grey list also holds "Log".
const QStringList kToolbarImages{
    QStringLiteral("Exit"),   QStringLiteral("Options"), QStringLiteral("Calc"),
    QStringLiteral("Dialer"), QStringLiteral("Web"),     QStringLiteral("Tip"),
    QStringLiteral("Help"),   QStringLiteral("Save"),    QStringLiteral("Print"),
    QStringLiteral("Delete"), QStringLiteral("Cut"),     QStringLiteral("Copy"),
    QStringLiteral("Paste"),  QStringLiteral("Undo"),    QStringLiteral("Redo"),
    QStringLiteral("TCR")};

QAction* MakeAction(QMenu* menu, const char* name, const QString& caption, int helpContext) {
    auto* action = menu->addAction(caption);
    action->setObjectName(QLatin1String(name));
    action->setProperty(Help::kContextProperty, helpContext);
    return action;
}

QMenu* MakeMenu(QWidget* parent, const char* name, const QString& caption, int helpContext) {
    auto* menu = new QMenu(caption, parent);
    menu->setObjectName(QLatin1String(name));
    menu->setProperty(Help::kContextProperty, helpContext);
    menu->menuAction()->setProperty(Help::kContextProperty, helpContext);
    return menu;
}

// The program's control a widget belongs to: itself, or the composite control (a list view,
// a tab strip) it is a part of. Parts are marked "internalPart"; Qt's own bear a "qt_" name.
const QWidget* ProgramControlOf(const QWidget* widget) {
    for (; widget && !widget->isWindow(); widget = widget->parentWidget()) {
        const QString name = widget->objectName();
        if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_")) &&
            !widget->property("internalPart").toBool())
            return widget;
    }
    return nullptr;
}

// The control that has the focus in the program's forms. While another window (a message box,
// the help window) is active, that is the control the main window will give the focus back to.
QString ActiveControlName() {
    const QWidget* focus = QApplication::focusWidget();
    const QWidget* main = frmMDI::Instance();
    if (main && (!focus || (focus->window() != main &&
                            !focus->window()->objectName().startsWith(QLatin1String("frm")))))
        focus = main->focusWidget();
    const QWidget* control = ProgramControlOf(focus);
    return control ? control->objectName() : QString();
}
} // namespace

frmMDI::frmMDI(QWidget* parent)
    : QMainWindow(parent), mdiArea(new QMdiArea(this)), tbToolBar(new Toolbar(this)),
      sbStatusBar(new StatusBar(this)), MDITimer(new QTimer(this)) {
    setObjectName(QStringLiteral("frmMDI"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(kAppTitle);
    setWindowIcon(QIcon(QStringLiteral(":/icons/vantry.svg")));
    gInstance = this;
    Forms::Register(this);

    mdiArea->setObjectName(QStringLiteral("mdiArea"));
    mdiArea->setAccessibleName(QStringLiteral("Workspace"));
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdiArea);

    MDITimer->setObjectName(QStringLiteral("MDITimer"));
    MDITimer->setInterval(500);
    connect(MDITimer, &QTimer::timeout, this, &frmMDI::MDITimer_Timer);

    CreateMenus();
    CreateToolbar();

    sbStatusBar->setObjectName(QStringLiteral("sbStatusBar"));
    setStatusBar(sbStatusBar);
    sbStatusBar->AttachStatusLine();

    connect(mdiArea, &QMdiArea::subWindowActivated, this, &frmMDI::ShowMenusOf);
    Help::InstallF1Handler();
    cLogErr::SetActiveControlNameSource(&ActiveControlName);
    // The position isn't kept between runs: the window opens in the middle of the screen.
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect room = screen->availableGeometry();
        resize(QSize(1000, 720).boundedTo(room.size() * 0.9));
        move(room.center() - rect().center());
    }
    MDIForm_Load();
}

frmMDI::~frmMDI() {
    // The child forms reach this window on their way out (settings, toolbar, status line), so
    // they go first, while it is still whole; their activation must not reach it any more.
    disconnect(mdiArea, nullptr, this, nullptr);
    qDeleteAll(mdiArea->subWindowList());
    if (gInstance == this)
        gInstance = nullptr;
}

frmMDI* frmMDI::Instance() {
    return gInstance;
}

void frmMDI::CreateMenus() {
    mnuFile = MakeMenu(this, "mnuFile", QStringLiteral("&File"), 3000);
    mnuFileRestore =
        MakeAction(mnuFile, "mnuFileRestore", QStringLiteral("Restore from Backup..."), 3000);
    connect(mnuFileRestore, &QAction::triggered, this, &frmMDI::mnuFileRestore_Click);
    mnuFile->addSeparator()->setObjectName(QStringLiteral("mnuSepRestore"));
    mnuFileExit = MakeAction(mnuFile, "mnuFileExit", QStringLiteral("E&xit"), 3000);
    mnuFileExit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(mnuFileExit, &QAction::triggered, this, &frmMDI::mnuFileExit_Click);

    mnuView = MakeMenu(this, "mnuView", QStringLiteral("&View"), 3000);
    mnuViewToolbar = MakeAction(mnuView, "mnuViewToolbar", QStringLiteral("&Toolbar"), 3001);
    mnuViewStatusBar = MakeAction(mnuView, "mnuViewStatusBar", QStringLiteral("Status &Bar"), 2507);
    for (QAction* entry : {mnuViewToolbar, mnuViewStatusBar}) {
        entry->setCheckable(true);
        entry->setChecked(true);
    }
    // A click flips the check itself; the handlers flip it when the program calls them.
    // Either way the bar follows the check.
    connect(mnuViewToolbar, &QAction::toggled, tbToolBar, &QWidget::setVisible);
    connect(mnuViewStatusBar, &QAction::toggled, sbStatusBar, &QWidget::setVisible);
    mnuView->addSeparator()->setObjectName(QStringLiteral("mnuSep3"));
    mnuViewOptions = MakeAction(mnuView, "mnuViewOptions", QStringLiteral("&Options..."), 7500);
    connect(mnuViewOptions, &QAction::triggered, this, &frmMDI::mnuViewOptions_Click);

    mnuWindow = MakeMenu(this, "mnuWindow", QStringLiteral("&Window"), 3000);
    // The frame's menu shows only while no child is active, with nothing to arrange; the
    // children's own Window menus arrange their windows. So these three do nothing here.
    mnuTileHorizontally =
        MakeAction(mnuWindow, "mnuTileHorizontally", QStringLiteral("Tile &Horizontally"), 3000);
    mnuTileVertically =
        MakeAction(mnuWindow, "mnuTileVertically", QStringLiteral("Tile &Vertically"), 3000);
    mnuCascade = MakeAction(mnuWindow, "mnuCascade", QStringLiteral("&Cascade"), 3000);
    AttachWindowList(mnuWindow);

    mnuHelp = MakeMenu(this, "mnuHelp", QStringLiteral("&Help"), 3000);
    mnuHelpContents = MakeAction(mnuHelp, "mnuHelpContents", QStringLiteral("&Contents..."), 3000);
    mnuSearchForHelpOn =
        MakeAction(mnuHelp, "mnuSearchForHelpOn", QStringLiteral("&Search For Help On..."), 3000);
    mnuHelp->addSeparator()->setObjectName(QStringLiteral("mnuSep4"));
    mnuHelpAbout = MakeAction(mnuHelp, "mnuHelpAbout", QStringLiteral("&About..."), 2502);
    mnuHelp->addSeparator()->setObjectName(QStringLiteral("mnuSep5"));
    mnuTipOfTheDay =
        MakeAction(mnuHelp, "mnuTipOfTheDay", QStringLiteral("Show &Tip of the Day..."), 2503);
    connect(mnuHelpContents, &QAction::triggered, this, &frmMDI::mnuHelpContents_Click);
    connect(mnuSearchForHelpOn, &QAction::triggered, this, &frmMDI::mnuSearchForHelpOn_Click);
    connect(mnuHelpAbout, &QAction::triggered, this, &frmMDI::mnuHelpAbout_Click);
    connect(mnuTipOfTheDay, &QAction::triggered, this, &frmMDI::mnuTipOfTheDay_Click);

    mOwnMenus = {mnuFile, mnuView, mnuWindow, mnuHelp};
    ShowMenusOf(nullptr);

    mnuTbPopup = MakeMenu(this, "mnuTbPopup", QStringLiteral("Toolbar Popup"), 3001);
    mnuTbPopupLarge =
        MakeAction(mnuTbPopup, "mnuTbPopupLarge", QStringLiteral("Large Buttons"), 3001);
    mnuTbPopupSmall =
        MakeAction(mnuTbPopup, "mnuTbPopupSmall", QStringLiteral("Small Buttons"), 3001);
    mnuTbPopupText = MakeAction(mnuTbPopup, "mnuTbPopupText", QStringLiteral("Text"), 3001);
    for (QAction* entry : {mnuTbPopupLarge, mnuTbPopupSmall, mnuTbPopupText})
        entry->setCheckable(true);
    mnuTbPopupLarge->setChecked(true);
    connect(mnuTbPopupLarge, &QAction::triggered, this, &frmMDI::mnuTbPopupLarge_Click);
    connect(mnuTbPopupSmall, &QAction::triggered, this, &frmMDI::mnuTbPopupSmall_Click);
    connect(mnuTbPopupText, &QAction::toggled, this, [this](bool checked) {
        for (int i = 1; i <= tbToolBar->Count(); ++i) {
            ToolbarButton& button = tbToolBar->Buttons(i);
            button.SetCaption(checked ? button.Key() : QString());
        }
    });
}

void frmMDI::CreateToolbar() {
    imlToolbarSGrey.Add(kToolbarImages);
    imlToolbarLGrey.Add(kToolbarImages);
    imlToolbarLGrey.Add(QStringLiteral("Log"));
    imlToolbarLarge.Add(kToolbarImages);
    imlToolbarSmall.Add(kToolbarImages);

    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    tbToolBar->setWindowTitle(QStringLiteral("Toolbar"));
    struct Entry {
        const char* key;
        const char* description;
        const char* toolTip;
    };
    // In index order; a null key is a separator.
    static const Entry entries[] = {
        {"Exit", "Exit Vantry! Vantry!", "Exit Vantry! Vantry!"},
        {nullptr, nullptr, nullptr},
        {"Save", "Save Record", "Save Record"},
        {"Print", "Print", "Print record"},
        {nullptr, nullptr, nullptr},
        {"Delete", "Delete Record(s)", "Delete Record"},
        {nullptr, nullptr, nullptr},
        {"Cut", "Cut", "Cut"},
        {"Copy", "Copy", "Copy"},
        {"Paste", "Paste", "Paste"},
        {nullptr, nullptr, nullptr},
        {"Calc", "Calculator", "Calculator"},
        {"Dialer", "Autodialer", "Telephone Dialer"},
        {nullptr, nullptr, nullptr},
        {"Options", "Options", "Options"},
        {nullptr, nullptr, nullptr},
        {"Web", "KVX Web Page", "KVX Web Page"},
        {nullptr, nullptr, nullptr},
        {"Tip", "Tip of the Day", "Tip of the Day"},
        {"Help", "Help", "Help"},
        {"TCR", "TCR", "Visit Thrift Courier on the web"},
    };
    for (const Entry& entry : entries) {
        if (!entry.key) {
            tbToolBar->AddSeparator();
            continue;
        }
        const QString key = QLatin1String(entry.key);
        tbToolBar->AddButton(key, QLatin1String(entry.description), QLatin1String(entry.toolTip),
                             key);
    }
    addToolBar(Qt::TopToolBarArea, tbToolBar);
    connect(tbToolBar, &Toolbar::ButtonClick, this, &frmMDI::tbToolBar_ButtonClick);
    connect(tbToolBar, &Toolbar::MouseUp, this, &frmMDI::tbToolBar_MouseUp);
}

QMdiSubWindow* frmMDI::AddChild(QWidget* form) {
    for (QMdiSubWindow* child : mdiArea->subWindowList()) {
        if (child->widget() == form)
            return child;
    }
    QMdiSubWindow* child = mdiArea->addSubWindow(form);
    child->setAttribute(Qt::WA_DeleteOnClose);
    child->setWindowIcon(form->windowIcon().isNull() ? windowIcon() : form->windowIcon());
    return child;
}

void frmMDI::AttachWindowList(QMenu* windowMenu) {
    ::AttachWindowList(windowMenu, [this] { return mdiArea; });
}

QString frmMDI::ActiveFormName() const {
    const QMdiSubWindow* child = mdiArea->currentSubWindow();
    return child && child->widget() ? child->widget()->objectName() : QString();
}

void frmMDI::ShowMenusOf(QMdiSubWindow* child) {
    // While the whole program is inactive the area reports no active child; the menus of
    // the child that comes back on activation stay in place.
    if (!child)
        child = mdiArea->currentSubWindow();
    const auto* withMenus = child ? dynamic_cast<const MdiChild*>(child->widget()) : nullptr;
    const QList<QMenu*> menus = withMenus ? withMenus->Menus() : mOwnMenus;
    menuBar()->clear();
    for (QMenu* menu : menus)
        menuBar()->addMenu(menu);
}

void frmMDI::HideRebateButtons() {
    for (int i = 1; i <= tbToolBar->Count(); ++i) {
        if (i == 3 || (i >= 6 && i <= 11))
            tbToolBar->Buttons(i).SetVisible(false);
    }
}

void frmMDI::ShowRebateButtons() {
    for (int i = 1; i <= tbToolBar->Count(); ++i) {
        if (i == 3 || (i >= 5 && i <= 11))
            tbToolBar->Buttons(i).SetVisible(true);
    }
    const RecordForm* rebate = RecordForm::Open();
    if (rebate && rebate->RebateID().isEmpty())
        tbToolBar->Buttons(4).SetEnabled(false);
}

void frmMDI::MDIForm_Load() {
    // Relative file names (the compaction's) land beside the store.
    QDir::setCurrent(DataPath());
    if (ReadSetting(Setting::MdiToolbar) == QStringLiteral("Large"))
        mnuTbPopupLarge_Click();
    else
        mnuTbPopupSmall_Click();
    // The click below turns the check round, so it starts from the opposite.
    mnuTbPopupText->setChecked(!ReadFlag(Setting::MdiToolbarText));
    mnuTbPopupText_Click();
}

void frmMDI::mnuTbPopupLarge_Click() {
    ChooseButtonSize(true);
}

void frmMDI::mnuTbPopupSmall_Click() {
    ChooseButtonSize(false);
}

void frmMDI::ChooseButtonSize(bool large) {
    mnuTbPopupLarge->setChecked(large);
    mnuTbPopupSmall->setChecked(!large);
    tbToolBar->SetImageList(nullptr);
    tbToolBar->SetHotImageList(nullptr);
    if (mnuTbPopupLarge->isChecked()) {
        tbToolBar->SetImageList(&imlToolbarLGrey);
        tbToolBar->SetHotImageList(&imlToolbarLarge);
    } else {
        tbToolBar->SetImageList(&imlToolbarSGrey);
        tbToolBar->SetHotImageList(&imlToolbarSmall);
    }
    for (int i = 1; i <= tbToolBar->Count(); ++i) {
        ToolbarButton& button = tbToolBar->Buttons(i);
        if (button.ButtonStyle() == ToolbarButton::Default)
            button.SetImage(button.Key());
    }
}

void frmMDI::mnuTbPopupText_Click() {
    mnuTbPopupText->toggle();
}

void frmMDI::tbToolBar_MouseUp(int button, const QPoint& globalPos) {
    if (button != 2)
        return;
    {
        const QSignalBlocker quiet(mnuTbPopupText);
        mnuTbPopupText->setChecked(!tbToolBar->Buttons(1).Caption().isEmpty());
    }
    mnuTbPopup->popup(globalPos);
}

void frmMDI::mnuViewToolbar_Click() {
    mnuViewToolbar->toggle();
}

void frmMDI::mnuViewStatusBar_Click() {
    mnuViewStatusBar->toggle();
}

void frmMDI::mnuViewOptions_Click() {
    Maintenance::ShowOptions(this);
}

void frmMDI::mnuHelpAbout_Click() {
    Maintenance::ShowAbout(this);
}

void frmMDI::mnuTipOfTheDay_Click() {
    Maintenance::ShowTipOfTheDay(this);
}

void frmMDI::mnuFileRestore_Click() {
    Maintenance::ShowRestore(this);
}

void frmMDI::mnuFileExit_Click() {
    close();
}

bool frmMDI::NoHelpBox() {
    if (!Help::Available()) {
        Help::NoHelpBox(windowTitle());
        return true;
    }
    return false;
}

void frmMDI::mnuHelpContents_Click() {
    if (NoHelpBox())
        return;
    Help::ShowContents();
}

void frmMDI::mnuSearchForHelpOn_Click() {
    if (NoHelpBox())
        return;
    Help::ShowSearch();
}

void frmMDI::tbToolBar_ButtonClick(const QString& key) {
    if (key == QStringLiteral("Exit")) {
        close();
    } else if (key == QStringLiteral("Calc")) {
        frmCalculator::ShowModal(this);
    } else if (key == QStringLiteral("Dialer")) {
        frmAutoDial::ShowModal(this, QString(), QString());
    } else if (key == QStringLiteral("Options")) {
        mnuViewOptions_Click();
    } else if (key == QStringLiteral("Web")) {
        SetStatusText(QStringLiteral("Opening web browser..."));
        OpenDocument(kProductWebSite);
    } else if (key == QStringLiteral("TCR")) {
        SetStatusText(QStringLiteral("Opening web browser..."));
        OpenDocument(gTCRLink);
    } else if (key == QStringLiteral("Tip")) {
        mnuTipOfTheDay_Click();
    } else if (key == QStringLiteral("Help")) {
        mnuHelpContents_Click();
    } else if (key == QStringLiteral("Print")) {
        PrintClicked();
    } else if (MdiChild* child = ActiveChild()) {
        // Save, Delete, Cut, Copy, Paste and Undo act on the active child (the rebate form);
        // the buttons stay visible while none is open, and then do nothing.
        if (key == QStringLiteral("Save") && child->CanSave()) {
            SetStatusText(QStringLiteral("Saving record..."));
            child->Save();
        } else if (key == QStringLiteral("Delete") && child->CanDelete()) {
            child->Delete();
        } else if (key == QStringLiteral("Cut") && child->CanCut()) {
            child->Cut();
        } else if (key == QStringLiteral("Copy") && child->CanCopy()) {
            child->Copy();
        } else if (key == QStringLiteral("Paste") && child->CanPaste()) {
            child->Paste();
        } else if (key == QStringLiteral("Undo") && child->CanUndo()) {
            child->Undo();
        }
    }
}

MdiChild* frmMDI::ActiveChild() const {
    const QMdiSubWindow* child = mdiArea->currentSubWindow();
    return child ? dynamic_cast<MdiChild*>(child->widget()) : nullptr;
}

void frmMDI::PrintClicked() {
    // While a rebate form is open, the button prints it, and only when it is the active child;
    // on the Switchboard it prints the statistics whichever page is on top.
    MdiChild* child = ActiveChild();
    if (!child || !child->CanPrint() ||
        (RecordForm::Open() && ActiveFormName() != QStringLiteral("frmRebate")))
        return;
    child->Print();
}

void frmMDI::SetToolbarVisible(bool visible) {
    tbToolBar->setVisible(visible);
}

void frmMDI::SetStatusBarVisible(bool visible) {
    sbStatusBar->setVisible(visible);
}

void frmMDI::Run(Command command) {
    switch (command) {
    case Command::Options:
        mnuViewOptions_Click();
        break;
    case Command::About:
        mnuHelpAbout_Click();
        break;
    case Command::TipOfTheDay:
        mnuTipOfTheDay_Click();
        break;
    case Command::HelpContents:
        mnuHelpContents_Click();
        break;
    case Command::SearchForHelpOn:
        mnuSearchForHelpOn_Click();
        break;
    case Command::TileHorizontally:
        mnuTileHorizontally->trigger();
        break;
    case Command::TileVertically:
        mnuTileVertically->trigger();
        break;
    case Command::Cascade:
        mnuCascade->trigger();
        break;
    case Command::RestoreFromBackup:
        mnuFileRestore_Click();
        break;
    }
}

void frmMDI::CloseWhenSwitchboardGone() {
    MDITimer->start();
}

void frmMDI::Exit() {
    close();
}

void frmMDI::MDITimer_Timer() {
    if (mbClosing || IsFormLoaded(QStringLiteral("frmSwitchboard")))
        return;
    close();
    DoEvents();
}

void frmMDI::MDIForm_QueryUnload() {
    if (!isMinimized()) {
        const QRect frame = frameGeometry();
        WriteSetting(Setting::MainLeft, QString::number(frame.x() * kTwipsPerPixel));
        WriteSetting(Setting::MainTop, QString::number(frame.y() * kTwipsPerPixel));
        WriteSetting(Setting::MainWidth, QString::number(frame.width() * kTwipsPerPixel));
        WriteSetting(Setting::MainHeight, QString::number(frame.height() * kTwipsPerPixel));
    }
    WriteSetting(Setting::MdiToolbar,
                 mnuTbPopupLarge->isChecked() ? QStringLiteral("Large") : QStringLiteral("Small"));
    WriteSetting(Setting::MdiToolbarText,
                 mnuTbPopupText->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
}

void frmMDI::closeEvent(QCloseEvent* event) {
    if (mbClosing) {
        event->ignore();
        return;
    }
    mbClosing = true;
    MDIForm_QueryUnload();
    // The children are asked next; any of them may keep the program open.
    for (QMdiSubWindow* child : mdiArea->subWindowList()) {
        if (!child->close()) {
            mbClosing = false;
            event->ignore();
            return;
        }
    }
    MDIForm_Unload();
    event->accept();
}

void frmMDI::MDIForm_Unload() {
    Help::Quit();
    // Recordsets hold their rows by themselves; the database is what stays open.
    gDatabase.reset();
    EndProgram(0);
}
