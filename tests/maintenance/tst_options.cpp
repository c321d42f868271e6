#include "Fixture.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "app/AppSettings.h"
#include "common/core/Settings.h"
#include "common/ui/TabStrip.h"
#include "maintenance/frmOptions.h"
#include "shell/frmMDI.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

namespace {
// The stored text, "<none>" when the key is missing.
QString Stored(const SettingSpec& setting) {
    return GetSetting(kAppTitle, setting.section, setting.key, "<none>");
}
} // namespace

class tst_options : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    // A damaged number of backups shows the default too; what is typed there is kept.
    void loadsDefaultsAndOkWritesAllSix() {
        WriteSetting(Setting::BackupsKept, "ten");
        frmOptions options;
        options.show();
        for (QCheckBox* box :
             {options.chkSound, options.chkTips, options.chkAlarm, options.chkErrorLogging})
            QVERIFY2(box->isChecked(), qPrintable(box->objectName()));
        QCOMPARE(options.Postage->text(), QString(".32"));
        QCOMPARE(options.spnBackupsKept->value(), 10);
        QVERIFY(!options.cmdApply->isEnabled());
        options.tbsTabs->Tabs().Item("General")->SetSelected(true);
        options.spnBackupsKept->setFocus();
        QTest::keyClick(options.spnBackupsKept, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(options.spnBackupsKept, "3");
        QTest::mouseClick(options.cmdOK, Qt::LeftButton);
        QCOMPARE(options.result(), int(QDialog::Accepted));
        for (const SettingSpec* setting :
             {&Setting::Sound, &Setting::Tips, &Setting::Alarm, &Setting::ErrorLogging})
            QCOMPARE(ReadSetting(*setting), QString("1"));
        QCOMPARE(ReadSetting(Setting::Postage), QString("$0.32"));
        QCOMPARE(Stored(Setting::BackupsKept), QString("3"));
    }

    // Cancel without Apply saves nothing; what Apply saved stays after Cancel.
    void applyCancelSemantics() {
        for (const bool apply : {false, true}) {
            frmOptions options;
            options.show();
            QTest::mouseClick(options.chkAlarm, Qt::LeftButton);
            QVERIFY(options.cmdApply->isEnabled());
            if (apply) {
                QTest::mouseClick(options.cmdApply, Qt::LeftButton);
                QVERIFY(!options.cmdApply->isEnabled());
            }
            QTest::mouseClick(options.cmdCancel, Qt::LeftButton);
            QVERIFY(!options.isVisible());
            QCOMPARE(Stored(Setting::Alarm), QString(apply ? "0" : "<none>"));
        }
    }

    void postageValidation_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char* name, const char* typed, const char* shown, bool refused,
                            const char* stored) {
            QTest::newRow(name) << QString(typed) << QString(shown) << refused << QString(stored);
        };
        row("empty passes", "", "", false, "");
        row("two points", "1.2.3", "1.2.3", true, "$0.55");
        row("letters are dropped as typed", "4x5", "$45.00", false, "$45.00");
    }
    void postageValidation() {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(bool, refused);
        QFETCH(QString, stored);
        WriteSetting(Setting::Postage, "$0.55");
        frmOptions options;
        options.show();
        options.tbsTabs->Tabs().Item(2)->SetSelected(true);
        QVERIFY(QTest::qWaitForWindowActive(&options));
        options.Postage->setFocus();
        options.Postage->selectAll();
        QTest::keyClick(options.Postage, Qt::Key_Delete);
        QTest::keyClicks(options.Postage, typed);
        QTest::mouseClick(options.cmdOK, Qt::LeftButton);
        QCOMPARE(options.Postage->text(), shown);
        QCOMPARE(options.isVisible(), refused);
        QCOMPARE(mFixture->Desktop().Shown(),
                 refused ? QStringList{"Invalid Amount | 0 | Please enter a valid postage amount."}
                         : QStringList());
        if (refused)
            QCOMPARE(options.focusWidget(), options.Postage);
        QCOMPARE(ReadSetting(Setting::Postage), stored);
    }

    // The toolbar's Options button opens the real modal dialog; the focus comes back to the
    // main window when it closes.
    void toolbarOpensModalAndFocusReturns() {
        mFixture->OpenDatabase();
        ProgramWindow program;
        QVERIFY(QTest::qWaitForWindowActive(&program.Mdi()));
        bool seen = false;
        WhenModal("frmOptions", [&seen](QWidget* dialog) {
            seen = dialog->windowTitle() == "Options" && QTest::qWaitForWindowActive(dialog);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        program.Mdi().mnuViewOptions_Click();
        QVERIFY(seen);
        QTRY_COMPARE(QApplication::activeWindow(), &program.Mdi());
    }
};

QTEST_MAIN(tst_options)
#include "tst_options.moc"
