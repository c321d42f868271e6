#include "Fixture.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/HelpWindow.h"
#include "common/ui/ImageList.h"
#include "common/ui/MdiChild.h"
#include "common/ui/QtDesktop.h"
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
#include <QMessageBox>
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
    bool CanPrint() const override { return true; }
    void Print() override { Record("Print"); }
    void Save() override { Record("Save"); }
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

    // The keys by index, "" for a separator; one button's description and tool tip stand for
    // all. The right button opens the pop-up, Web and TCR the browser; View hides and shows.
    void toolbarAndViewMenu() {
        const QString expected =
            "Exit;;Save;Print;;Delete;;Cut;Copy;Paste;;Calc;Dialer;;Options;;Web;;Tip;Help;TCR";
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
            shown << key;
            QToolButton* widget = main->findChild<QToolButton*>(key);
            QVERIFY2(widget && widget->isVisible(), qPrintable(key));
        }
        QCOMPARE(shown.join(";"), expected);
        QCOMPARE(main->tbToolBar->Buttons("Dialer").Description(), QString("Autodialer"));
        QCOMPARE(main->tbToolBar->Buttons("Dialer").ToolTipText(), QString("Telephone Dialer"));

        QTest::mouseClick(main->findChild<QToolButton*>("Exit"), Qt::RightButton);
        QTRY_VERIFY(main->mnuTbPopup->isVisible());
        main->mnuTbPopup->close();
        gTCRLink = kTCRLink;
        for (const char* key : {"Web", "TCR"}) {
            SetStatusText("Ready...");
            QTest::mouseClick(main->findChild<QToolButton*>(key), Qt::LeftButton);
            QCOMPARE(main->sbStatusBar->PanelText(3), QString("Opening web browser..."));
        }
        QCOMPARE(mFixture->Desktop().openedDocuments, (QStringList{kProductWebSite, kTCRLink}));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
        for (bool shown : {false, true}) {
            main->mnuViewToolbar->trigger();
            QCOMPARE(main->mnuViewToolbar->isChecked(), shown);
            QCOMPARE(main->tbToolBar->isVisible(), shown);
            main->mnuViewStatusBar->trigger();
            QCOMPARE(main->sbStatusBar->isVisible(), shown);
        }
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

        // F1 on a menu entry opens its topic without running the entry.
        main->activateWindow();
        main->mnuView->popup(main->mapToGlobal(QPoint(10, 10)));
        QTRY_VERIFY(main->mnuView->isVisible());
        main->mnuView->setActiveAction(main->mnuViewStatusBar);
        QTest::keyClick(main->mnuView, Qt::Key_F1);
        QTRY_COMPARE(Help::Window()->CurrentTopic(), 2507);
        QVERIFY(!main->mnuView->isVisible());
        QVERIFY(main->mnuViewStatusBar->isChecked());
        // Closing the main window closes the help too.
        main->close();
        QVERIFY(!Help::Window());
    }

    // A child's menus stand in for the frame's; the Window menu lists the open children.
    void childMenus() {
        frmMDI* main = MakeMain();
        QCOMPARE(Entries(main->menuBar()), QString("&File|&View|&Window|&Help"));
        AddForm("frmSwitchboard");
        QCOMPARE(Entries(main->menuBar()), QString("&Record"));
        main->mnuWindow->popup(main->mapToGlobal(QPoint(0, 0)));
        QTRY_VERIFY(main->mnuWindow->isVisible());
        QCOMPARE(Entries(main->mnuWindow),
                 QString("Tile &Horizontally|Tile &Vertically|&Cascade|&1 frmSwitchboard"));
        main->mnuWindow->close();
    }

    void timerEndsProgramWithoutSwitchboard() {
        frmMDI* main = MakeMain();
        FakeForm* switchboard = AddForm("frmSwitchboard");
        main->MDITimer->start();
        QTest::qWait(700);
        QCOMPARE(mEnded, 0); // the Switchboard is still there

        switchboard->close();
        delete switchboard->parentWidget(); // the sub-window goes, and the form with it
        QTRY_COMPARE(mEnded, 1);
        QTRY_VERIFY(!mMain);
    }

    void statusBarPanels() {
        auto bar = std::make_unique<StatusBar>();
        bar->AttachStatusLine();
        SetStatusText("Loading records...");
        const QStringList panels{"11/23/2026", "10:00 AM", "Loading records..."};
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(bar->PanelText(i), panels[i - 1]);

        bar.reset();
        SetStatusText("Ready..."); // nothing attached any more, nothing breaks
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    // Every picture the toolbars, lists and forms ask for is in the program and draws something
    // at both sizes.
    void pictureKeys() {
        for (const char* key :
             {"Exit",   "Options", "Calc",    "Dialer",  "Web",         "Tip",
              "Help",   "Save",    "Print",   "Delete",  "Cut",         "Copy",
              "Paste",  "Undo",    "Redo",    "TCR",     "Log",         "New",
              "Unsent", "Pending", "Overdue", "Paid",    "Followup",    "Rejected",
              "Large",  "Small",   "List",    "Details", "Arrange All", "AZ",
              "ZA",     "Find",    "Back",    "Forward", "Hyperlink",   "NoHyperlink"}) {
            for (int size : {16, 32}) {
                ImageList list(size);
                list.Add(key);
                const QImage image = list.Picture(key).toImage();
                int inked = 0;
                for (int y = 0; y < image.height(); ++y)
                    for (int x = 0; x < image.width(); ++x)
                        inked += qAlpha(image.pixel(x, y)) > 128;
                QVERIFY2(inked > size * size / 8, key);
            }
        }
    }

    void messageBoxButtons_data() {
        using B = QMessageBox;
        QTest::addColumn<int>("style");
        QTest::addColumn<B::StandardButtons>("buttons");
        QTest::addColumn<B::StandardButton>("defaultButton");
        QTest::addColumn<B::Icon>("icon");
        QTest::addColumn<int>("answer");
        const auto row = [](int style, B::StandardButtons buttons, B::StandardButton byDefault,
                            B::Icon icon, int answer) {
            QTest::addRow("%d", style) << style << buttons << byDefault << icon << answer;
        };
        row(0, B::Ok, B::Ok, B::NoIcon, vb::vbOK);
        row(16, B::Ok, B::Ok, B::Critical, vb::vbOK);
        row(36, B::Yes | B::No, B::Yes, B::Question, vb::vbYes);
        row(37, B::Retry | B::Cancel, B::Retry, B::Question, vb::vbRetry);
        row(48, B::Ok, B::Ok, B::Warning, vb::vbOK);
        row(292, B::Yes | B::No, B::No, B::Question, vb::vbNo);
        row(289, B::Ok | B::Cancel, B::Cancel, B::Question, vb::vbCancel);
    }

    void messageBoxButtons() {
        QFETCH(int, style);
        QFETCH(QMessageBox::StandardButtons, buttons);
        QFETCH(QMessageBox::StandardButton, defaultButton);
        QFETCH(QMessageBox::Icon, icon);
        QFETCH(int, answer);
        const auto box = QtDesktop::MakeBox("Are you sure?", style, "Question");
        QCOMPARE(box->standardButtons(), buttons);
        QCOMPARE(box->standardButton(box->defaultButton()), defaultButton);
        QCOMPARE(box->icon(), icon);
        QCOMPARE(box->windowTitle(), QString("Question"));
        QCOMPARE(vb::DefaultAnswer(style), answer); // taken with no desktop to ask
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
