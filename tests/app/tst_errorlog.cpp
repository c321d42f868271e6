#include "Fixture.h"
#include "app/AppSettings.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/Settings.h"
#include "common/core/modUtilities.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
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
        cLogErr::SetActiveControlNameSource(nullptr);
        mFixture.reset();
    }

    void block_data() {
        QTest::addColumn<QVariant>("location");  // null: left out
        QTest::addColumn<QVariant>("control");   // null: no source of the focused control
        QTest::addColumn<QStringList>("middle"); // the lines between "Error Source:" and memory

        QTest::newRow("all lines")
            << QVariant("cmdOK_Click") << QVariant("txtFields_20")
            << QStringList{"Error Location:\t\tcmdOK_Click", "Active Control:\t\ttxtFields_20"};
        QTest::newRow("no focus") << QVariant("cmdOK_Click") << QVariant(QString())
                                  << QStringList{"Error Location:\t\tcmdOK_Click"};
        QTest::newRow("no control source") << QVariant("AddAllListItems()") << QVariant()
                                           << QStringList{"Error Location:\t\tAddAllListItems()"};
        QTest::newRow("no location")
            << QVariant() << QVariant("lvAll") << QStringList{"Active Control:\t\tlvAll"};
        QTest::newRow("empty location")
            << QVariant(QString("")) << QVariant() << QStringList{"Error Location:\t\t"};
    }

    void block() {
        QFETCH(QVariant, location);
        QFETCH(QVariant, control);
        QFETCH(QStringList, middle);
        if (!control.isNull())
            cLogErr::SetActiveControlNameSource([name = control.toString()] { return name; });

        gErrorLog->LogIt(3021, "No current record.", "frmRebate",
                         location.isNull() ? std::nullopt : std::optional(location.toString()), "",
                         48, "Vantry! Vantry! Error");

        const QStringList lines =
            QStringList{"Date:\t\t\t23-Nov-26 10:00:00", "Program:\t\tVantry Ver: " + AppVersion(),
                        "Error Number:\t\t3021", "Description:\t\tNo current record.",
                        "Error Source:\t\tfrmRebate"}
            << middle
            << QStringList{"Memory Load:\t\t37%",
                           "Total Virtual: \t\t2,147,352,576",
                           "Available Virtual: \t2,000,000,000",
                           "Total Page File: \t2,147,483,647",
                           "Available Page File: \t1,234,567",
                           "Total Physical: \t2,147,483,647",
                           "Available Physical: \t987,654,321",
                           QString(50, '*')};
        QCOMPARE(ReadFile(mFixture->LogPath()), (lines.join("\r\n") + "\r\n").toUtf8());

        QCOMPARE(mFixture->Desktop().Shown(),
                 QStringList{"Vantry! Vantry! Error | 48 | No current record.\r\n\r\n" + kSteps});
    }

    void entriesAppend() {
        gErrorLog->LogIt(5, "First", "frmMDI", "Form_Load");
        const QByteArray first = ReadFile(mFixture->LogPath());
        Clock::Advance(65);
        gErrorLog->LogIt(13, "Second", "clsRebateStats", "GetStatistics()", "Unable to compile", 48,
                         "Error Compiling Stats");
        const QByteArray both = ReadFile(mFixture->LogPath());
        QVERIFY(both.startsWith(first));
        const QByteArray second = both.mid(first.size());
        QVERIFY(second.startsWith("Date:\t\t\t23-Nov-26 10:01:05\r\nProgram:"));
        QVERIFY(second.contains("\r\nError Number:\t\t13\r\nDescription:\t\tSecond\r\n"));
        QVERIFY(!second.contains("Unable to compile"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 2);
        QCOMPARE(mFixture->Desktop().boxes[1].title, QString("Error Compiling Stats"));
    }

    void loggingSetting_data() {
        QTest::addColumn<QVariant>("setting"); // null: never saved
        QTest::addColumn<bool>("written");
        QTest::newRow("never saved") << QVariant() << true;
        QTest::newRow("1") << QVariant("1") << true;
        QTest::newRow("0") << QVariant("0") << false;
        QTest::newRow("False") << QVariant("False") << false;
        QTest::newRow("damaged") << QVariant("maybe") << true;
    }

    void loggingSetting() {
        QFETCH(QVariant, setting);
        QFETCH(bool, written);
        if (!setting.isNull())
            SaveSetting(kAppTitle, "Options", "chkErrorLogging", setting.toString());
        gErrorLog->LogIt(75, "Path/File access error", "frmOptions", "SaveData()", "", 48,
                         "Unable to Save Option Settings");
        QCOMPARE(QFile::exists(mFixture->LogPath()), written);
        QCOMPARE(
            mFixture->Desktop().Shown(),
            QStringList{"Unable to Save Option Settings | 48 | Path/File access error\r\n\r\n" +
                        kSteps});
    }

    void purge_data() {
        QTest::addColumn<bool>("logExists");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("purged");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("yes") << true << 6 << true
                             << QStringList{"Preparing to Delete Error Log", "Action Successful"};
        QTest::newRow("no") << true << 7 << false << QStringList{"Preparing to Delete Error Log"};
        QTest::newRow("missing") << false << 6 << false
                                 << QStringList{"Preparing to Delete Error Log",
                                                "Unable to Complete Action"};
    }

    void purge() {
        QFETCH(bool, logExists);
        QFETCH(int, answer);
        QFETCH(bool, purged);
        QFETCH(QStringList, titles);
        if (logExists) {
            gErrorLog->LogIt(3022, "Duplicate", "frmRebate", "cmdOK_Click");
            mFixture->Desktop().boxes.clear();
        }
        mFixture->Desktop().SetNextAnswer(answer);
        QCOMPARE(gErrorLog->PurgeIt(), purged);
        QCOMPARE(QFile::exists(mFixture->LogPath()), logExists && !purged);

        const auto& boxes = mFixture->Desktop().boxes;
        QStringList shown;
        for (const auto& box : boxes)
            shown << box.title;
        QCOMPARE(shown, titles);
        QCOMPARE(boxes[0].prompt, QString("Are you sure you want to purge the error log?"));
        QCOMPARE(boxes[0].style, 36);
        if (titles.size() > 1)
            QCOMPARE(boxes[1].style, purged ? 0 : 48);
        if (!logExists)
            QCOMPARE(boxes[1].prompt,
                     QString("Unable to locate an error log to purge. Please purge "
                             "the file manually using Windows Explorer."));

        gErrorLog->LogIt(5, "Again", "frmMDI", "Form_Load");
        QVERIFY(ReadFile(mFixture->LogPath()).startsWith("Date:\t\t\t"));
    }

    void unwritableLog_data() {
        QTest::addColumn<QString>("log"); // "" for a folder where the log should be
        QTest::addColumn<QString>("why");
        QTest::newRow("log is a folder") << ""
                                         << "Path/File access error";
        QTest::newRow("disk full") << "/dev/full"
                                   << "Disk full";
        // Refused even to root, which write permissions don't bind.
        QTest::newRow("write refused") << "/sys/kernel/notes"
                                       << "Permission denied";
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
        if (log.isEmpty()) {
            QCOMPARE(ErrorOf([] { gErrorLog->Display(); }), 75);
            gErrorLog->Init(std::nullopt, mFixture->ProgramDir() + "other.log");
            gErrorLog->LogIt(5, "Later", "frmMDI", "Form_Load");
            QVERIFY(
                ReadFile(mFixture->ProgramDir() + "other.log").contains("Description:\t\tLater"));
        }
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

    void trapHelper() {
        LogError(VbError(VbError::DuplicateKey), "frmRebate", "cmdOK_Click");
        QByteArray log = ReadFile(mFixture->LogPath());
        QVERIFY(log.contains("Error Number:\t\t3022\r\nDescription:\t\tThe changes you requested"));
        QVERIFY(log.contains("Error Source:\t\tfrmRebate\r\nError Location:\t\tcmdOK_Click\r\n"));
        QCOMPARE(mFixture->Desktop().boxes.last().title, QString("Vantry! Vantry! Error"));
        QCOMPARE(mFixture->Desktop().boxes.last().style, 48);

        gErrorLog.reset();
        LogError(VbError(VbError::FileNotFound), "frmMDI", "MDIForm_Unload", "Late Title");
        log = ReadFile(mFixture->LogPath());
        QVERIFY(log.contains("Error Number:\t\t53\r\nDescription:\t\tFile not found\r\n"));
        QCOMPARE(mFixture->Desktop().boxes.size(), 2);
        QCOMPARE(mFixture->Desktop().boxes.last().title, QString("Late Title"));
    }

    void systemMemoryFigures() {
        cLogErr::SetMemoryStatusSource(nullptr);
        gErrorLog->LogIt(6, "Overflow", "clsRebateStats", "GetStatistics()");
        const QString log = mFixture->LogText();
        const QRegularExpression figures(
            "\r\nMemory Load:\t\t\\d{1,3}%\r\n"
            "Total Virtual: \t\t(-?[\\d,]+)\r\nAvailable Virtual: \t(-?[\\d,]+)\r\n"
            "Total Page File: \t(-?[\\d,]+)\r\nAvailable Page File: \t(-?[\\d,]+)\r\n"
            "Total Physical: \t(-?[\\d,]+)\r\nAvailable Physical: \t(-?[\\d,]+)\r\n\\*{50}\r\n$");
        const QRegularExpressionMatch match = figures.match(log);
        QVERIFY2(match.hasMatch(), qPrintable(log));
        for (int i = 1; i <= 6; ++i) {
            const QString figure = match.captured(i);
            QVERIFY2(QRegularExpression("^\\d{1,3}(,\\d{3})*$").match(figure).hasMatch(),
                     qPrintable(figure));
            QVERIFY(QString(figure).remove(QLatin1Char(',')).toLongLong() <= 2147483647);
        }
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_GUILESS_MAIN(tst_errorlog)
#include "tst_errorlog.moc"
