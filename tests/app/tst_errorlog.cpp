#include "Fixture.h"
#include "app/AppSettings.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/Settings.h"
#include "common/core/modUtilities.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {
const QString kSteps = "Please report this error to Vantry! Vantry! Technical Support at "
                       "support@vantry.example.\r\n\r\n"
                       "To send a detailed bug report, follow these steps:\r\n\r\n"
                       "\t1. Click on the 'Options' button on the toolbar\r\n"
                       "\t2. Click on the 'General' tab\r\n"
                       "\t3. Click on the 'View Error Log' button\r\n"
                       "\t4. Click on the 'Send Log to KVX' button";

MemoryStatus FixedMemory() {
    MemoryStatus status;
    status.memoryLoad = 37;
    status.totalVirtual = 2147352576; // the old 2 GB
    status.availVirtual = 2000000000;
    status.totalPageFile = qint64(5) << 30; // beyond the 32-bit figure
    status.availPageFile = 1234567;
    status.totalPhys = qint64(3) << 30; // between 2 and 4 GiB
    status.availPhys = 987654321;
    return status;
}
} // namespace

class tst_errorlog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        mFixture = std::make_unique<Fixture>();
        cLogErr::SetMemoryStatusSource(FixedMemory);
    }

    void cleanup() {
        cLogErr::SetMemoryStatusSource(nullptr);
        mFixture.reset();
    }

    // An error after the log object has gone (at the very end) is still logged below the earlier
    // ones, and told.
    void blockThenLateError() {
        gErrorLog->LogIt(3021, "No current record.", "frmRebate", "cmdOK_Click", "", 48,
                         "Vantry! Vantry! Error");
        const QString entry =
            "Date:\t\t\t23-Nov-26 10:00:00\r\nProgram:\t\tVantry Ver: " + AppVersion() +
            "\r\nError Number:\t\t3021\r\nDescription:\t\tNo current record.\r\n"
            "Error Source:\t\tfrmRebate\r\nError Location:\t\tcmdOK_Click\r\n"
            "Memory Load:\t\t37%\r\nTotal Virtual: \t\t2,147,352,576\r\n"
            "Available Virtual: \t2,000,000,000\r\nTotal Page File: \t2,147,483,647\r\n"
            "Available Page File: \t1,234,567\r\nTotal Physical: \t2,147,483,647\r\n"
            "Available Physical: \t987,654,321\r\n" +
            QString(50, '*') + "\r\n";
        QCOMPARE(ReadFile(mFixture->LogPath()), entry.toUtf8());
        QCOMPARE(mFixture->Desktop().Shown(),
                 QStringList{"Vantry! Vantry! Error | 48 | No current record.\r\n\r\n" + kSteps});
        gErrorLog.reset();
        LogError(VbError(VbError::FileNotFound), "frmMDI", "MDIForm_Unload", "Late Title");
        const QByteArray log = ReadFile(mFixture->LogPath());
        QVERIFY(log.startsWith(entry.toUtf8()));
        QVERIFY(log.contains("Error Number:\t\t53\r\nDescription:\t\tFile not found\r\n"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 2);
        QCOMPARE(mFixture->Desktop().boxes.last().title, QString("Late Title"));
    }

    void loggingSetting_data() {
        QTest::addColumn<QVariant>("setting"); // null: never saved
        QTest::addColumn<bool>("written");
        QTest::newRow("never saved") << QVariant() << true;
        QTest::newRow("False") << QVariant("False") << false;
    }
    void loggingSetting() {
        QFETCH(QVariant, setting);
        QFETCH(bool, written);
        if (!setting.isNull())
            SaveSetting(kAppTitle, "Options", "chkErrorLogging", setting.toString());
        gErrorLog->LogIt(75, "Path/File access error", "frmOptions", "SaveData()", "", 48,
                         "Unable to Save Option Settings");
        QCOMPARE(QFile::exists(mFixture->LogPath()), written);
        QCOMPARE(mFixture->Desktop().boxes.size(), 1); // told all the same
    }

    void purge_data() {
        QTest::addColumn<bool>("logExists");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("then"); // the box after the question, "" for none
        QTest::newRow("yes") << true << 6
                             << "Action Successful | 0 | The error log was successfully purged.";
        QTest::newRow("no") << true << 7 << "";
        QTest::newRow("missing") << false << 6
                                 << "Unable to Complete Action | 48 | Unable to locate an error "
                                    "log to purge. Please purge the file manually using Windows "
                                    "Explorer.";
    }
    void purge() {
        QFETCH(bool, logExists);
        QFETCH(int, answer);
        QFETCH(QString, then);
        if (logExists)
            gErrorLog->LogIt(3022, "Duplicate", "frmRebate", "cmdOK_Click");
        mFixture->Desktop().boxes.clear();
        mFixture->Desktop().SetNextAnswer(answer);
        const bool purged = then.startsWith("Action");
        QCOMPARE(gErrorLog->PurgeIt(), purged);
        QCOMPARE(QFile::exists(mFixture->LogPath()), logExists && !purged);
        QStringList shown{"Preparing to Delete Error Log | 36 | Are you sure you want to purge the "
                          "error log?"};
        if (!then.isEmpty())
            shown << then;
        QCOMPARE(mFixture->Desktop().Shown(), shown);
    }

    void unwritableLog_data() {
        QTest::addColumn<QString>("log"); // "" for a folder where the log should be
        QTest::addColumn<QString>("why");
        QTest::newRow("log is a folder") << QString() << "Path/File access error";
        QTest::newRow("disk full") << QString("/dev/full") << "Disk full";
    }
    void unwritableLog() {
        QFETCH(QString, log);
        QFETCH(QString, why);
        if (log.isEmpty())
            QVERIFY(QDir().mkpath(mFixture->LogPath()));
        else if (!QFileInfo::exists(log))
            QSKIP("this system has no such file");
        else
            gErrorLog->Init(std::nullopt, log);
        gErrorLog->LogIt(3027, "Cannot update. Database or object is read-only.", "frmRebate",
                         "cmdOK_Click", QString(), 48, "Vantry! Vantry! Error");
        // The failed save is still told, the log's failure below it.
        QCOMPARE(mFixture->Desktop().Shown(),
                 (QStringList{"Error Writing Log File | 48 | " + why,
                              "Vantry! Vantry! Error | 48 | Cannot update. Database or object is "
                              "read-only.\r\nThe error log could not be written: " +
                                  why + ".\r\n\r\n" + kSteps}));
        if (log.isEmpty())
            QCOMPARE(ErrorOf([] { gErrorLog->Display(); }), 75);
    }

    void unwritableSettingsToldOnce() {
        // A file where the settings folder should be: no user can write there.
        QFile blocker(mFixture->ProgramDir() + "blocker");
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        SettingsStore::SetDirectory(mFixture->ProgramDir() + "blocker/settings");
        WriteSetting(Setting::MainLeft, "100");
        WriteSetting(Setting::MainTop, "200");
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.size(), 1);
        QVERIFY(boxes[0].prompt.contains("could not be written"));
        QCOMPARE(mFixture->LogText().count("Error Number:\t\t75\r\n"), 1);
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_GUILESS_MAIN(tst_errorlog)
#include "tst_errorlog.moc"
