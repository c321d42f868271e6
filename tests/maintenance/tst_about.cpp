#include "Fixture.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "common/core/Globals.h"
#include "common/core/modUtilities.h"
#include "maintenance/frmAbout.h"
#include "shell/frmMDI.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

class tst_about : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    // Help > About opens the real modal box; a click on its picture the modal credits; each
    // gives the focus back to its owner when it closes.
    void aboutAndCreditsModal() {
        mFixture->OpenDatabase();
        ProgramWindow program;
        QVERIFY(QTest::qWaitForWindowActive(&program.Mdi()));
        bool creditsShown = false;
        bool aboutActiveAgain = false;
        WhenModal("frmAbout", [&](QWidget* dialog) {
            auto* about = static_cast<frmAbout*>(dialog);
            WhenModal("frmCredits", [&](QWidget* credits) {
                creditsShown = QTest::qWaitForWindowActive(credits);
                credits->close();
            });
            QTest::mouseClick(about->imgAbout, Qt::LeftButton);
            aboutActiveAgain = QTest::qWaitFor([about] { return about->isActiveWindow(); });
            QTest::keyClick(about, Qt::Key_Return);
        });
        program.Mdi().mnuHelpAbout_Click();
        QVERIFY(creditsShown);
        QVERIFY(aboutActiveAgain);
        QTRY_COMPARE(QApplication::activeWindow(), &program.Mdi());
    }

    // The links, and a system information tool that isn't there.
    void versionLinksAndSystemInformation() {
        frmAbout about;
        QCOMPARE(about.lblVersion->text(), "Version " + AppVersion());
        QTest::mouseClick(about.cmdEmailKVX, Qt::LeftButton);
        QTest::mouseClick(about.cmdKVXWebPage, Qt::LeftButton);
        QTest::mouseClick(about.lblTCR, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments,
                 (QStringList{"mailto:" + kSupportMailbox, kProductWebSite, gTCRLink}));
        qputenv("PATH", QByteArray("/nonexistent"));
        StartSysInfo();
        QCOMPARE(mFixture->Desktop().Shown(),
                 QStringList{"Unable to Start System Information | 48 | System Information is not "
                             "installed in the location specified in the system registry."});
    }
};

QTEST_MAIN(tst_about)
#include "tst_about.moc"
