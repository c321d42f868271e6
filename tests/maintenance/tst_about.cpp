#include "Fixture.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "app/AppSettings.h"
#include "common/core/Globals.h"
#include "common/core/modUtilities.h"
#include "maintenance/frmAbout.h"
#include "maintenance/modMultimedia.h"
#include "shell/frmMDI.h"
#include "shell/frmSplash.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class tst_about : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;
    QStringList mPlayed;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        mPlayed.clear();
        Multimedia::SetSoundOutput([this](const QString& sound) { mPlayed << sound; });
        QFile res(mFixture->ProgramDir() + "Vantry.res");
        QVERIFY(res.open(QIODevice::WriteOnly));
    }
    void cleanup() {
        Multimedia::SetSoundOutput(nullptr);
        mFixture.reset();
    }

    void themeSongFollowsSetting_data() {
        QTest::addColumn<QString>("sound");
        QTest::addColumn<bool>("resourceFile");
        QTest::addColumn<int>("played");
        QTest::newRow("on") << "1" << true << 3;
        QTest::newRow("option off") << "0" << true << 0;
        QTest::newRow("no Vantry.res") << "1" << false << 0;
    }
    void themeSongFollowsSetting() {
        QFETCH(QString, sound);
        QFETCH(bool, resourceFile);
        QFETCH(int, played);
        WriteSetting(Setting::Sound, sound);
        if (!resourceFile)
            QVERIFY(QFile::remove(mFixture->ProgramDir() + "Vantry.res"));
        { frmSplash splash; }
        { frmAbout about; }
        { frmCredits credits; }
        QCOMPARE(mPlayed.size(), played);
        if (played) {
            QCOMPARE(mPlayed.first(), kThemeSong);
            QFile song(":/sound/theme.wav"); // a short WAV
            QVERIFY(song.open(QIODevice::ReadOnly) && song.size() < 200 * 1024);
            QCOMPARE(song.read(4), QByteArray("RIFF"));
        }
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
    }

    void versionAndLinks() {
        frmAbout about;
        QCOMPARE(about.lblVersion->text(), "Version " + AppVersion());
        QCOMPARE(about.lblCompanyProduct->text(), "Vantry! Vantry! " + AppVersion());
        QTest::mouseClick(about.cmdEmailKVX, Qt::LeftButton);
        QTest::mouseClick(about.cmdKVXWebPage, Qt::LeftButton);
        QTest::mouseClick(about.lblTCR, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().openedDocuments,
                 (QStringList{"mailto:" + kSupportMailbox, kProductWebSite, gTCRLink}));
    }

    // Each tick moves the credits up 25 twips; once gone at the top they start again from
    // just below the window; the man turns every 32 ticks.
    void creditsRoll() {
        frmCredits credits;
        credits.show();
        QVERIFY(QTest::qWaitForWindowExposed(&credits));
        QVERIFY(credits.Timer1->isActive());
        QCOMPARE(credits.Timer1->interval(), 25);
        credits.Timer1->stop();
        const int start = credits.FrameTop();
        QCOMPARE(start, credits.picBack->height() * 15);
        const QImage man = credits.imgMan->pixmap().toImage();
        for (int i = 0; i < 32; ++i)
            credits.Timer1_Timer();
        QCOMPARE(credits.FrameTop(), start - 32 * 25);
        QVERIFY(credits.imgMan->pixmap().toImage() != man);
        while (credits.FrameTop() >= -credits.Frame1->height() * 15)
            credits.Timer1_Timer();
        credits.Timer1_Timer();
        QCOMPARE(credits.FrameTop(), credits.picBack->height() * 15 - 1 - 25);
    }

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
