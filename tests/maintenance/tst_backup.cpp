#include "Fixture.h"
#include "ListRows.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "app/AppSettings.h"
#include "app/Backups.h"
#include "app/Compaction.h"
#include "app/DeletedRecords.h"
#include "common/core/Clock.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "data/Database.h"
#include "maintenance/frmRestore.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "shell/modMain.h"
#include "shell/modPrevInstance.h"
#include "switchboard/frmSwitchboard.h"

#include <QDir>
#include <QProcess>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTest>
#include <QTreeWidget>

namespace {
// A query's output from the sqlite3 program, on a connection of its own.
QString Sqlite3(const QString& path, const QString& sql) {
    QProcess process;
    process.start("sqlite3", {"-readonly", path, sql});
    if (!process.waitForFinished(10000))
        return "<no sqlite3>";
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QStringList BackupNames(const Fixture& fixture) {
    return QDir(fixture.ProgramDir() + "Backups").entryList(QDir::Files, QDir::Name);
}

// Start-up's settings for a start over the fixture's store with a stand-in Switchboard; the
// program's windows go with this object.
class StartSettings {
public:
    StartSettings() {
        gDatabase.reset();
        Startup::SetSplashSeconds(0);
        WriteSetting(Setting::Tips, "0");
        Forms::SetFactory("frmSwitchboard", [] {
            auto* form = new QWidget;
            form->setObjectName("frmSwitchboard");
            Forms::Register(form);
            return form;
        });
    }
    ~StartSettings() {
        delete frmMDI::Instance();
        Help::Quit();
        Forms::SetFactory("frmSwitchboard", nullptr);
        PrevInstance::Release();
        Startup::SetSplashSeconds(4);
    }
};
} // namespace

class tst_backup : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

    // Opens "Restore from Backup..." from the Switchboard's File menu, picks the row and clicks
    // Restore; the rows the dialog listed come back as "made|records".
    QStringList RestoreRow(ProgramWindow& window, int row) {
        QStringList listed;
        WhenModal("frmRestore", [&listed, row](QWidget* dialog) {
            auto* form = static_cast<frmRestore*>(dialog);
            QTreeWidget* list = form->lstBackups;
            for (int i = 0; i < list->topLevelItemCount(); ++i)
                listed << list->topLevelItem(i)->text(0) + '|' + list->topLevelItem(i)->text(1);
            list->setCurrentItem(list->topLevelItem(row));
            QTest::mouseClick(form->cmdRestore, Qt::LeftButton);
            if (form->isVisible())
                form->reject();
        });
        window.Switchboard().mnuRestore->trigger();
        return listed;
    }

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() {
        Backups::SetRestoreFaultHook(nullptr);
        mFixture.reset();
    }

    // The start makes a backup; another program reads it while the program runs and writes.
    void startBackupReadsBackWhileRunning() {
        mFixture->OpenDatabase(GenerateRebates(40, 5));
        const StartSettings start;
        QVERIFY(Main());
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
        QCOMPARE(BackupNames(*mFixture), QStringList{"Vantry-20261123-100000.mdb"});
        InsertRebates({RouterRow("after-start", "Written after the backup")});
        const QString backup = mFixture->ProgramDir() + "Backups/Vantry-20261123-100000.mdb";
        if (QStandardPaths::findExecutable("sqlite3").isEmpty())
            QSKIP("sqlite3 is not installed");
        QCOMPARE(Sqlite3(backup, "PRAGMA integrity_check"), QString("ok"));
        QCOMPARE(Sqlite3(backup, "SELECT Count(*) FROM Rebates"), QString("40"));
        QCOMPARE(Sqlite3(mFixture->DatabasePath(), "SELECT Count(*) FROM Rebates"), QString("41"));
    }

    // The newest are kept, by the moment in the name and, within a second, by the number.
    void keepsTheNewest_data() {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QStringList>("kept");
        QStringList newest;
        for (const char* at : {"0-4", "0-5", "0-6", "1-2", "1-3", "1-4", "1-5", "1-6", "1", "2"})
            newest << QString("Vantry-20261123-10000%1.mdb").arg(at);
        QTest::newRow("3") << "3"
                           << QStringList{"Vantry-20261123-100001-5.mdb",
                                          "Vantry-20261123-100001-6.mdb",
                                          "Vantry-20261123-100002.mdb"};
        QTest::newRow("0 is no number of backups") << "0" << newest;
    }
    void keepsTheNewest() {
        QFETCH(QString, setting);
        QFETCH(QStringList, kept);
        mFixture->OpenDatabase(PlainRebates(2));
        WriteSetting(Setting::BackupsKept, setting);
        for (int second = 0; second < 3; ++second) {
            for (int i = 0; i < (second == 2 ? 1 : 6); ++i)
                QVERIFY(!Backups::MakeBackup().isEmpty());
            Clock::Advance(1);
        }
        QCOMPARE(BackupNames(*mFixture), kept);
    }

    // A folder that can't take a backup is told once; the start and the purge go on.
    void unwritableFolderToldOnce() {
        mFixture->OpenDatabase({{.RebateID = "gone", .Deleted = true}, RouterRow("1", "kept")});
        QFile blocker(mFixture->ProgramDir() + "Backups");
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        const StartSettings start;
        QVERIFY(Main());
        QVERIFY(frmMDI::Instance() && frmMDI::Instance()->isVisible());
        QCOMPARE(PurgeDeletedRecords({"gone"}), 1);
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QVERIFY(mFixture->Desktop().boxes[0].prompt.startsWith(
            "A backup of your database could not be written to '" + mFixture->ProgramDir() +
            "Backups/'"));
        QCOMPARE(mFixture->LogText().count("MakeBackup()"), 1);
    }

    // Purge and compaction each copy the store first. Unsaved typing in an open rebate stops a
    // restore and stays; otherwise the chosen backup replaces the store, the store as it was is
    // kept, a clean open rebate closes and the lists follow.
    void restoreThroughTheDialog() {
        mFixture->OpenDatabase(PlainRebates(3) << RebateRow{.RebateID = "gone", .Deleted = true});
        QCOMPARE(PurgeDeletedRecords({"gone"}), 1);
        Clock::Advance(1);
        QVERIFY(CompactRebateDatabase(nullptr));
        {
            // As a backup made before files could be attached.
            QSqlDatabase older = QSqlDatabase::addDatabase("QSQLITE", "older");
            older.setDatabaseName(Backups::List().first().path);
            QVERIFY(older.open());
            QVERIFY(QSqlQuery(older).exec("DROP TABLE Attachments"));
            older.close();
        }
        QSqlDatabase::removeDatabase("older");
        Clock::Advance(60);
        InsertRebates({RouterRow("4", "r4"), RouterRow("5", "r5")});
        ProgramWindow window;
        window.ClickTab("All");
        frmRebate* form = RebateFormDriver::OpenExisting("4");
        RebateFormDriver::Type(form, RebateField::Remarks, "x");
        RestoreRow(window, 0);
        QCOMPARE(CountRebates(), 5);
        QVERIFY(IsFormLoaded("frmRebate"));
        form->cmdCancel_Click();
        RebateFormDriver::OpenExisting("4");
        mFixture->Desktop().SetNextAnswer(vb::vbYes);
        QCOMPARE(RestoreRow(window, 0),
                 (QStringList{"11/23/2026 10:00:01 AM|3", "11/23/2026 10:00:00 AM|4"}));
        QCOMPARE(CountRebates(), 3);
        QVERIFY(!IsFormLoaded("frmRebate"));
        // The restored store takes files again.
        QVERIFY(QSqlQuery(gDatabase->Connection()).exec("SELECT count(*) FROM Attachments"));
        QCOMPARE(SortedIDs(window.Switchboard().lvAll), (QStringList{"1", "2", "3"}));
        const QList<BackupFile> backups = Backups::List(); // the newest first
        QCOMPARE(backups.size(), 3);
        QCOMPARE(backups[0].records, 5);
        QCOMPARE(mFixture->Desktop().Shown(),
                 (QStringList{"Unsaved Rebate | 0 | Please save the current rebate record before "
                              "attempting to restore a backup.",
                              "Restore from Backup | 292 | Replace your database with the "
                              "backup made 11/23/2026 10:00:01 AM, holding 3 records?\r\n\r\nA "
                              "backup of your database as it is now is made first.",
                              "Restore Complete | 64 | Your database has been restored from the "
                              "backup made 11/23/2026 10:00:01 AM."}));
    }

    // A restore that fails leaves the store as it was, open, and says so.
    void failedRestoreKeepsStore_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("fails half-way") << "half-way";
        QTest::newRow("damaged page") << "damaged";
        QTest::newRow("another program's database") << "foreign";
        QTest::newRow("store locked by another program") << "locked";
    }
    void failedRestoreKeepsStore() {
        QFETCH(QString, fault);
        const QList<RebateRow> generated = GenerateRebates(6000, 9);
        mFixture->OpenDatabase(generated);
        const QString backup = Backups::MakeBackup();
        gDatabase->Execute("DELETE FROM Rebates WHERE rowid % 2 = 0");
        const QString kept = generated[0].RebateID;
        const QVariantMap row = ReadRawRebate(kept);
        const int rows = CountRebates();
        if (fault == "half-way") {
            // After the first step some pages lie in the store's open transaction.
            Backups::SetRestoreFaultHook(
                [] { throw VbError(dbError::DiskFull, "Injected failure"); });
        } else if (fault == "foreign") {
            QVERIFY(QFile::remove(backup));
            auto db = QSqlDatabase::addDatabase("QSQLITE", "foreign");
            db.setDatabaseName(backup);
            QVERIFY(db.open());
            QVERIFY(QSqlQuery(db).exec("CREATE TABLE Other (x)"));
            db.close();
        } else if (fault != "locked") {
            QFile file(backup);
            QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
            QVERIFY(file.write(QByteArray(8192, '\xff')) == 8192);
        }
        Clock::Advance(60);
        ProgramWindow window;
        mFixture->Desktop().SetNextAnswer(vb::vbYes);
        {
            // Another program's write transaction on the store, held until it is closed.
            QSqlDatabase locker = QSqlDatabase::addDatabase("QSQLITE", "locker");
            locker.setDatabaseName(gDatabase->Name());
            if (fault == "locked")
                QVERIFY(locker.open() && QSqlQuery(locker).exec("BEGIN IMMEDIATE"));
            RestoreRow(window, 0);
            locker.close();
        }
        QSqlDatabase::removeDatabase("locker");
        QVERIFY(gDatabase && gDatabase->IsOpen());
        QCOMPARE(CountRebates(), rows);
        QCOMPARE(ReadRawRebate(kept), row);
        QCOMPARE(gDatabase->CheckIntegrity(), QString());
        QCOMPARE(mFixture->Desktop().boxes.last().title, QString("Restore Failed"));
        QVERIFY(mFixture->LogText().contains("cmdRestore_Click"));
    }
};

QTEST_MAIN(tst_backup)
#include "tst_backup.moc"
