#include "Fixture.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "app/AppSettings.h"
#include "common/core/Globals.h"
#include "maintenance/Maintenance.h"
#include "maintenance/frmTip.h"
#include "shell/frmMDI.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

class tst_tip : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    void tipsInOrderAndWrap() {
        const QStringList& tips = frmTip::AllTips();
        QCOMPARE(tips.size(), 33);
        QCOMPARE(tips.at(3), QString("Everything's BIG in Texas!"));
        gAppStarted = true;
        frmTip tip;
        QVERIFY(tip.Form_Load());
        while (tip.CurrentTip() != tips.size())
            tip.NextTip();
        QCOMPARE(tip.lblTipText->text(), tips.last());
        QTest::mouseClick(tip.cmdNextTip, Qt::LeftButton);
        QCOMPARE(tip.lblTipText->text(), tips.first());
        QTest::mouseClick(tip.cmdPrevTip, Qt::LeftButton);
        QCOMPARE(tip.CurrentTip(), tips.size());
    }

    void startupSetting_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("started");
        QTest::addColumn<bool>("shown");
        QTest::newRow("on at start") << "1" << false << true;
        QTest::newRow("off at start") << "0" << false << false;
        QTest::newRow("off from the menu") << "0" << true << true;
    }
    void startupSetting() {
        QFETCH(QString, stored);
        QFETCH(bool, started);
        QFETCH(bool, shown);
        WriteSetting(Setting::Tips, stored);
        gAppStarted = started;
        frmTip tip;
        QCOMPARE(tip.Form_Load(), shown);
        if (!shown)
            return;
        QCOMPARE(tip.chkLoadTipsAtStartup->isChecked(), stored == "1");
        // A change of the box is saved at once, even when the close box ends the dialog.
        tip.show();
        tip.chkLoadTipsAtStartup->setFocus();
        QTest::keyClick(tip.chkLoadTipsAtStartup, Qt::Key_Space);
        tip.reject();
        QCOMPARE(ReadSetting(Setting::Tips), QString(stored == "1" ? "0" : "1"));
    }

    // The toolbar's Tip button opens the real modal dialog whatever the setting says; OK gives
    // the focus back to the main window.
    void toolbarButtonOpensModal() {
        mFixture->OpenDatabase();
        WriteSetting(Setting::Tips, "0");
        gAppStarted = true;
        ProgramWindow program;
        QVERIFY(QTest::qWaitForWindowActive(&program.Mdi()));
        bool boxClear = false;
        WhenModal("frmTip", [&boxClear](QWidget* dialog) {
            auto* tip = static_cast<frmTip*>(dialog);
            boxClear = !tip->chkLoadTipsAtStartup->isChecked();
            QTest::keyClick(tip, Qt::Key_Return);
        });
        program.Mdi().tbToolBar_ButtonClick("Tip");
        QVERIFY(boxClear);
        QTRY_COMPARE(QApplication::activeWindow(), &program.Mdi());
    }
};

QTEST_MAIN(tst_tip)
#include "tst_tip.moc"
