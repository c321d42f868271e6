#include "Fixture.h"
#include "Modal.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/HelpWindow.h"
#include "common/ui/MdiChild.h"
#include "common/ui/StatusBar.h"
#include "common/ui/Toolbar.h"
#include "data/Database.h"
#include "shell/frmMDI.h"
#include "shell/modMain.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTest>
#include <QToolButton>

// Stand-ins for the Switchboard and the rebate form, recording the commands that reach them.
class FakeForm : public QWidget, public MdiChild, public RecordForm {
    Q_OBJECT
public:
    FakeForm(const QString& name, QStringList* calls) : mCalls(calls) {
        setObjectName(name);
        setWindowTitle(name);
        Forms::Register(this);
        mMenu = new QMenu("&Record", this);
        mMenu->setObjectName("mnuRecord");
    }
    QList<QMenu*> Menus() const override { return {mMenu}; }
    bool mRefuseClose = false;

    bool CanSave() const override { return objectName() == "frmRebate"; }
    bool CanDelete() const override { return CanSave(); }
    bool CanCut() const override { return CanSave(); }
    bool CanCopy() const override { return CanSave(); }
    bool CanPaste() const override { return CanSave(); }
    bool CanPrint() const override { return true; }
    void Print() override { Record("Print"); }
    void Save() override { Record("Save"); }
    void Delete() override { Record("Delete"); }
    void Cut() override { Record("Cut"); }
    void Copy() override { Record("Copy"); }
    void Paste() override { Record("Paste"); }
    bool RecordChanged() const override { return false; }
    QString RebateID() const override { return {}; }
    void Unload() override {}
    void ZOrder() override {}

protected:
    void closeEvent(QCloseEvent* event) override {
        if (mRefuseClose)
            event->ignore();
    }

private:
    void Record(const QString& call) { mCalls->append(objectName() + "." + call); }
    QStringList* mCalls;
    QMenu* mMenu;
};

namespace {
const char* const kPlaces[] = {"MainLeft", "MainTop", "MainWidth", "MainHeight"};

QString Entries(const QWidget* menu) {
    QStringList texts;
    for (const QAction* entry : menu->actions())
        if (!entry->isSeparator())
            texts << entry->text();
    return texts.join('|');
}
} // namespace

class tst_mdi : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void init() {
        mFixture = std::make_unique<Fixture>();
        mCalls.clear();
        mEnded = 0;
        Startup::SetEndProgramHandler([this](int) { ++mEnded; });
        App::SetHelpFile(QString());
    }

    void cleanup() {
        delete mMain.data();
        Help::Quit();
        App::SetHelpFile(QString());
        Startup::SetEndProgramHandler(nullptr);
        mFixture.reset();
    }

    void toolbarTable() {
        // By index: key|description|tool tip, separated by ";"; "" for a separator.
        const QString expected =
            "Exit|Exit Vantry! Vantry!|Exit Vantry! Vantry!;;Save|Save Record|Save Record;"
            "Print|Print|Print record;;Delete|Delete Record(s)|Delete Record;;Cut|Cut|Cut;"
            "Copy|Copy|Copy;Paste|Paste|Paste;;Calc|Calculator|Calculator;"
            "Dialer|Autodialer|Telephone Dialer;;Options|Options|Options;;"
            "Web|KVX Web Page|KVX Web Page;;Tip|Tip of the Day|Tip of the Day;Help|Help|Help;"
            "TCR|TCR|Visit Thrift Courier on the web";
        frmMDI* main = MakeMain();
        QCOMPARE(main->windowTitle(), QString("Vantry! Vantry!"));
        QStringList shown;
        for (int i = 1; i <= main->tbToolBar->Count(); ++i) {
            ToolbarButton& button = main->tbToolBar->Buttons(i);
            QVERIFY(button.Visible());
            if (button.ButtonStyle() == ToolbarButton::Separator) {
                shown << "";
                continue;
            }
            const QString key = button.Key();
            shown << QStringList{key, button.Description(), button.ToolTipText()}.join("|");
            QToolButton* widget = main->findChild<QToolButton*>(key);
            QVERIFY2(widget && widget->isVisible(), qPrintable(key));
            QVERIFY(!widget->icon().isNull());
        }
        QCOMPARE(shown.join(";"), expected);
    }

    // The toolbar as the settings left it, and as the pop-up leaves it at the close; the frame's
    // place is written unless it closes minimised.
    void toolbarSettings_data() {
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("iconSize");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<bool>("minimised");
        const auto row = [](const char* name, const char* size, const char* text, int iconSize,
                            const char* caption, bool minimised = false) {
            QTest::newRow(name) << QString(size) << QString(text) << iconSize << QString(caption)
                                << minimised;
        };
        row("first start", "", "", 32, "Exit");
        row("small, no text", "Small", "0", 16, "");
        row("anything else is small", "large", "True", 16, "Exit");
        row("text not a Boolean", "Large", "maybe", 32, "Exit");
        row("minimised", "Small", "1", 16, "Exit", true);
    }

    void toolbarSettings() {
        QFETCH(QString, size);
        QFETCH(QString, text);
        QFETCH(int, iconSize);
        QFETCH(QString, caption);
        QFETCH(bool, minimised);
        for (const char* key : kPlaces)
            SaveSetting(kAppTitle, "Settings", key, "untouched");
        if (!size.isEmpty())
            SaveSetting(kAppTitle, "Settings", "MDI Toolbar", size);
        if (!text.isEmpty())
            SaveSetting(kAppTitle, "Settings", "MDI Toolbar Text", text);
        frmMDI* main = MakeMain();
        QCOMPARE(main->tbToolBar->iconSize(), QSize(iconSize, iconSize));
        QCOMPARE(main->mnuTbPopupLarge->isChecked(), iconSize == 32);
        QCOMPARE(main->mnuTbPopupSmall->isChecked(), iconSize == 16);
        QCOMPARE(main->mnuTbPopupText->isChecked(), !caption.isEmpty());
        QCOMPARE(main->tbToolBar->Buttons(1).Caption(), caption);
        QCOMPARE(main->tbToolBar->Buttons("TCR").Caption(), caption.isEmpty() ? "" : "TCR");
        QCOMPARE(main->findChild<QToolButton*>("TCR")->toolButtonStyle(),
                 caption.isEmpty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextUnderIcon);

        main->setGeometry(40, 30, 800, 600);
        const QRect frame = main->frameGeometry();
        main->mnuTbPopupText->trigger();
        if (minimised) {
            main->showMinimized();
            QTRY_VERIFY(main->isMinimized());
        }
        QVERIFY(main->close());
        QCOMPARE(mEnded, 1);
        const auto setting = [](const char* key) {
            return GetSetting(kAppTitle, "Settings", key, "missing");
        };
        QCOMPARE(setting("MDI Toolbar"), QString(iconSize == 32 ? "Large" : "Small"));
        QCOMPARE(setting("MDI Toolbar Text"), QString(caption.isEmpty() ? "1" : "0"));
        const int twips[] = {frame.x(), frame.y(), frame.width(), frame.height()};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(setting(kPlaces[i]), minimised ? "untouched" : QString::number(twips[i] * 15));
    }

    void toolbarPopup() {
        frmMDI* main = MakeMain();
        QTest::mouseClick(main->findChild<QToolButton*>("Exit"), Qt::RightButton);
        QTRY_VERIFY(main->mnuTbPopup->isVisible());
        main->mnuTbPopup->close();
        // The left button on a button is a click, never the pop-up: Calc opens the calculator.
        bool opened = false;
        WhileModal("frmCalculator", &opened, [](QWidget*) {});
        QTest::mouseClick(main->findChild<QToolButton*>("Calc"), Qt::LeftButton);
        QVERIFY(opened);
        QVERIFY(!main->mnuTbPopup->isVisible());
    }

    void childMayKeepProgramOpen() {
        mFixture->OpenDatabase();
        frmMDI* main = MakeMain();
        FakeForm* switchboard = AddForm("frmSwitchboard");
        switchboard->mRefuseClose = true;
        main->mnuTbPopupSmall_Click();
        main->tbToolBar_ButtonClick("Exit");
        QVERIFY(main->isVisible());
        QCOMPARE(mEnded, 0);
        QVERIFY(gDatabase);
        // The settings were saved before the child was asked.
        QCOMPARE(GetSetting(kAppTitle, "Settings", "MDI Toolbar"), QString("Small"));

        switchboard->mRefuseClose = false;
        main->mnuFileExit_Click();
        QCOMPARE(mEnded, 1);
        QVERIFY(!gDatabase); // closed at the end
        QTRY_VERIFY(!IsFormLoaded("frmSwitchboard"));
    }

    void webButtons() {
        frmMDI* main = MakeMain();
        gTCRLink = kTCRLink;
        for (const char* key : {"Web", "TCR"}) {
            SetStatusText("Ready...");
            QTest::mouseClick(main->findChild<QToolButton*>(key), Qt::LeftButton);
            QCOMPARE(main->sbStatusBar->PanelText(3), QString("Opening web browser..."));
        }
        QCOMPARE(mFixture->Desktop().openedDocuments, (QStringList{kProductWebSite, kTCRLink}));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }

    // The record buttons reach the active child: the rebate form takes them all, the
    // Switchboard only Print (its statistics); without a rebate form the others do nothing.
    void toolbarReachesTheActiveForm_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("withRebate");
        QTest::addColumn<QString>("active");
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("status"); // "" where the command doesn't set it
        const auto row = [](const char* name, const char* key, bool withRebate, const char* active,
                            const char* call, const char* status) {
            QTest::newRow(name) << QString(key) << withRebate << QString(active) << QString(call)
                                << QString(status);
        };
        const char *board = "frmSwitchboard", *rebate = "frmRebate";
        row("Save, no rebate form", "Save", false, board, "", "Ready...");
        row("Save", "Save", true, rebate, "frmRebate.Save", "Saving record...");
        row("Print on the Switchboard", "Print", false, board, "frmSwitchboard.Print", "");
        row("Print, rebate form behind the Switchboard", "Print", true, board, "", "");
        row("Print on the rebate form", "Print", true, rebate, "frmRebate.Print", "");
    }

    void toolbarReachesTheActiveForm() {
        QFETCH(QString, key);
        QFETCH(bool, withRebate);
        QFETCH(QString, active);
        QFETCH(QString, call);
        QFETCH(QString, status);
        frmMDI* main = MakeMain();
        SetStatusText("Ready...");
        FakeForm* switchboard = AddForm("frmSwitchboard");
        if (withRebate)
            AddForm("frmRebate");
        main->mdiArea->setActiveSubWindow(
            main->AddChild(active == "frmSwitchboard" ? switchboard : Forms::Find("frmRebate")));
        QCOMPARE(main->ActiveFormName(), active);

        QTest::mouseClick(main->findChild<QToolButton*>(key), Qt::LeftButton);
        QCOMPARE(mCalls, call.isEmpty() ? QStringList() : QStringList{call});
        if (!status.isEmpty())
            QCOMPARE(main->sbStatusBar->PanelText(3), status);
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }

    void helpCommands() {
        frmMDI* main = MakeMain();
        const QString noHelp =
            "Unable to display Help Contents. There is no Help associated with this project.";
        main->mnuHelpContents->trigger();
        main->mnuSearchForHelpOn->trigger();
        QTest::mouseClick(main->findChild<QToolButton*>("Help"), Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().Shown(), QStringList(3, "Vantry! Vantry! | 64 | " + noHelp));
        QVERIFY(!Help::Window());

        App::SetHelpFile(mFixture->ProgramDir() + "vantry.hlp");
        QTest::mouseClick(main->findChild<QToolButton*>("Help"), Qt::LeftButton);
        QVERIFY(Help::Window() && Help::Window()->isVisible());
        QCOMPARE(Help::Window()->CurrentTopic(), 0);
        main->mnuSearchForHelpOn->trigger();
        QTRY_COMPARE(QApplication::focusWidget(), Help::Window()->findChild<QWidget*>("txtSearch"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 3);
        // Closing the main window closes the help too.
        main->close();
        QVERIFY(!Help::Window());
    }

    void f1OnMenuEntry() {
        frmMDI* main = MakeMain();
        App::SetHelpFile(mFixture->ProgramDir() + "vantry.hlp");
        main->activateWindow();
        main->mnuView->popup(main->mapToGlobal(QPoint(10, 10)));
        QTRY_VERIFY(main->mnuView->isVisible());
        main->mnuView->setActiveAction(main->mnuViewStatusBar);
        QTest::keyClick(main->mnuView, Qt::Key_F1);
        QTRY_VERIFY(Help::Window() && Help::Window()->isVisible());
        QCOMPARE(Help::Window()->CurrentTopic(), 2507);
        QVERIFY(!main->mnuView->isVisible());
        QVERIFY(main->mnuViewStatusBar->isChecked()); // F1 doesn't run the entry
    }

    // A child's menus stand in for the frame's; a child without menus shows the frame's, and the
    // Window menu lists the open children.
    void childMenus() {
        frmMDI* main = MakeMain();
        QCOMPARE(Entries(main->menuBar()), QString("&File|&View|&Window|&Help"));
        AddForm("frmSwitchboard");
        QCOMPARE(Entries(main->menuBar()), QString("&Record"));
        auto* plain = new QWidget;
        plain->setWindowTitle("Plain");
        QMdiSubWindow* sub = main->AddChild(plain);
        sub->show();
        main->mdiArea->setActiveSubWindow(sub);
        QCOMPARE(Entries(main->menuBar()), QString("&File|&View|&Window|&Help"));
        main->mnuWindow->popup(main->mapToGlobal(QPoint(0, 0)));
        QTRY_VERIFY(main->mnuWindow->isVisible());
        QCOMPARE(
            Entries(main->mnuWindow),
            QString("Tile &Horizontally|Tile &Vertically|&Cascade|&1 frmSwitchboard|&2 Plain"));
        main->mnuWindow->close();
    }

    void viewMenu() {
        frmMDI* main = MakeMain();
        for (bool shown : {false, true}) {
            main->mnuViewToolbar->trigger();
            QCOMPARE(main->mnuViewToolbar->isChecked(), shown);
            QCOMPARE(main->tbToolBar->isVisible(), shown);
            main->mnuViewStatusBar->trigger();
            QCOMPARE(main->sbStatusBar->isVisible(), shown);
        }
    }

    void timerEndsProgramWithoutSwitchboard() {
        frmMDI* main = MakeMain();
        FakeForm* switchboard = AddForm("frmSwitchboard");
        main->MDITimer->start();
        QTest::qWait(700);
        QCOMPARE(mEnded, 0); // the Switchboard is still there
        QVERIFY(main->isVisible());

        switchboard->close();
        delete switchboard->parentWidget(); // the sub-window goes, and the form with it
        QTRY_COMPARE(mEnded, 1);
        QTRY_VERIFY(!mMain);
    }

private:
    frmMDI* MakeMain() {
        mMain = new frmMDI;
        mMain->show();
        if (!QTest::qWaitForWindowExposed(mMain))
            qWarning("main window not exposed");
        return mMain;
    }
    FakeForm* AddForm(const QString& name) {
        auto* form = new FakeForm(name, &mCalls);
        mMain->AddChild(form)->show();
        mMain->mdiArea->setActiveSubWindow(mMain->AddChild(form));
        return form;
    }

    std::unique_ptr<Fixture> mFixture;
    QPointer<frmMDI> mMain;
    QStringList mCalls;
    int mEnded = 0;
};

QTEST_MAIN(tst_mdi)
#include "tst_mdi.moc"
