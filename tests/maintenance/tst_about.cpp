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

    void versionAndLinks() {
        frmAbout about;
        QCOMPARE(about.lblVersion->text(), "Version " + AppVersion());
        QTest::mouseClick(about.cmdEmailKVX, Qt::LeftButton);
        QTest::mouseClick(about.cmdKVXWebPage, Qt::LeftButton);
        QTest::mouseClick(about.lblTCR, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments,
                 (QStringList{"mailto:" + kSupportMailbox, kProductWebSite, gTCRLink}));
    }

    // Help > About opens the real modal box.
    void aboutIsModal() {
        mFixture->OpenDatabase();
        ProgramWindow program;
        bool shown = false;
        WhenModal("frmAbout", [&shown](QWidget* about) {
            shown = about->isModal() && about->isVisible();
            QTest::keyClick(about, Qt::Key_Return);
        });
        program.Mdi().mnuHelpAbout_Click();
        QVERIFY(shown);
    }

    void noSystemInformationTool() {
        qputenv("PATH", QByteArray("/nonexistent"));
        StartSysInfo();
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QCOMPARE(mFixture->Desktop().boxes.first().title,
                 QString("Unable to Start System Information"));
    }
};

QTEST_MAIN(tst_about)
#include "tst_about.moc"
