#include "Fixture.h"
#include "RebateRows.h"
#include "app/Compaction.h"
#include "app/Notifier.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "data/Database.h"
#include "maintenance/frmOptions.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

namespace {
const QStringList kStatuses =
    QString("Removing old temp files...|Closing active database connection...|Compacting/repairing "
            "to temp file...|Verifying compacted database...|Database verified...|Deleting old "
            "temp file...|Renaming current database to backup...|Renaming compacted database to "
            "current...|Reopening database connection...|Ready...")
        .split('|');

// The rows of Rebates in a file, read as the next start would: -1 when it won't open.
int RowsIn(const QString& path) {
    try {
        auto db = Database::Open(path);
        auto rs = db->OpenRecordset("SELECT Count(*) FROM Rebates", dbOpenSnapshot);
        return rs->Fields(0).toInt();
    } catch (const VbError&) {
        return -1;
    }
}
} // namespace

class tst_compact : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;
    QStringList mStatus;

    bool Compact() {
        mStatus.clear();
        return CompactRebateDatabase([this](const QString& text) { mStatus << text; });
    }

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        mFixture->OpenDatabase(GenerateRebates(300, 7));
    }
    void cleanup() {
        Compaction::SetFaultHook(nullptr);
        mFixture.reset();
    }

    void compactsAndKeepsBackup() {
        gDatabase->Execute("DELETE FROM Rebates WHERE RebateID IN (SELECT RebateID FROM Rebates "
                           "LIMIT 250)");
        const auto size = [] {
            return QFileInfo(CompactLivePath()).size() +
                   QFileInfo(CompactLivePath() + "-wal").size();
        };
        const qint64 before = size();
        QVERIFY(Compact());
        QCOMPARE(mStatus, kStatuses);
        QCOMPARE(CountRebates(), 50); // on the reopened connection
        QVERIFY(size() < before);
        QCOMPARE(RowsIn(CompactBackupPath()), 50);
        QVERIFY(!QFile::exists(CompactTargetPath()));
        // A second run replaces the first backup, and a leftover target doesn't stop it.
        QFile leftover(CompactTargetPath());
        QVERIFY(leftover.open(QIODevice::WriteOnly));
        leftover.write("half a file");
        leftover.close();
        QVERIFY(Compact());
        QCOMPARE(RowsIn(CompactBackupPath()), 50);
    }

    // Each step fails in turn: the user's rows stay in the live file (or come back to it), the
    // connection is open again, and the next start finds them.
    void failedStepKeepsData_data() {
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("error");
        QTest::newRow("3 old target can't go") << 3 << int(dbError::ReadOnly);
        QTest::newRow("4 close") << 4 << 3000;
        QTest::newRow("5 disk full") << 5 << int(dbError::DiskFull);
        QTest::newRow("6 verify") << 6 << int(dbError::NotADatabase);
        QTest::newRow("8 old backup can't go") << 8 << 75;
        QTest::newRow("9 rename to backup") << 9 << 75;
        QTest::newRow("10 rename to live") << 10 << 75;
        QTest::newRow("11 reopen") << 11 << int(dbError::CannotOpen);
    }
    void failedStepKeepsData() {
        QFETCH(int, step);
        QFETCH(int, error);
        Compaction::SetFaultHook([step, error](int now) {
            if (now == step)
                throw VbError(error, "Injected failure");
        });
        QVERIFY(!Compact());
        QCOMPARE(mStatus.last(), QString("Ready..."));
        QCOMPARE(mStatus.size(), step - 1);
        QVERIFY(gDatabase && gDatabase->IsOpen());
        QCOMPARE(CountRebates(), 300);
        QCOMPARE(RowsIn(CompactLivePath()), 300);
        QVERIFY(mFixture->LogText().contains("CompactRebateDatabase()"));
    }

    void realFaults_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("target can't be written") << "target";
        QTest::newRow("corrupt live file") << "corrupt";
    }
    void realFaults() {
        QFETCH(QString, fault);
        QByteArray corrupt;
        if (fault == "target") {
            QVERIFY(QDir().mkpath(CompactTargetPath() + "/in-the-way"));
        } else {
            gDatabase->Close();
            QFile live(CompactLivePath());
            QVERIFY(live.open(QIODevice::ReadWrite));
            live.seek(0);
            live.write(QByteArray(4096, 'x'));
            live.close();
            corrupt = ReadFile(CompactLivePath());
        }
        QVERIFY(!Compact());
        if (fault == "target") {
            QVERIFY(gDatabase->IsOpen());
            QCOMPARE(RowsIn(CompactLivePath()), 300);
        } else {
            QCOMPARE(ReadFile(CompactLivePath()), corrupt);
        }
        QVERIFY(!QFile::exists(CompactBackupPath()));
    }

    // A start that finds no live file puts the backup back, never the empty reserve copy.
    void nextStartRestoresBackup() {
        Compaction::SetFaultHook([](int now) {
            if (now == 10)
                throw VbError(75, "Injected failure");
        });
        QVERIFY(!Compact());
        gDatabase->Close();
        // The failure's own put-back couldn't happen (say, the machine went down first).
        QVERIFY(QFile::rename(CompactLivePath(), CompactBackupPath() + ".tmp"));
        QFile::remove(CompactBackupPath());
        QVERIFY(QFile::rename(CompactBackupPath() + ".tmp", CompactBackupPath()));
        QCOMPARE(RestoreDatabaseFromCompaction(CompactLivePath()), CompactBackupPath());
        QCOMPARE(RowsIn(CompactLivePath()), 300);
        QCOMPARE(RowsIn(CompactBackupPath()), 300);
        QCOMPARE(RestoreDatabaseFromCompaction(CompactLivePath()), QString());
    }

    void repairButton_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("failAt");   // -1: a rebate is open
        QTest::addColumn<QString>("last"); // the last box's title and style
        QTest::newRow("cancel") << int(vb::vbCancel) << 0
                                << "Ready to Compact/Repair Database | 289";
        QTest::newRow("finished") << int(vb::vbOK) << 0 << "Finished! | 64";
        QTest::newRow("failed") << int(vb::vbOK) << 9 << "Repair Failed | 16";
        // The open rebate's record lives on the connection that compaction closes.
        QTest::newRow("rebate open") << int(vb::vbOK) << -1 << "Rebate Open | 48";
    }
    void repairButton() {
        QFETCH(int, answer);
        QFETCH(int, failAt);
        QFETCH(QString, last);
        Compaction::SetFaultHook([failAt](int now) {
            if (now == failAt)
                throw VbError(75, "Injected failure");
        });
        QWidget rebate;
        rebate.setObjectName("frmRebate");
        if (failAt < 0)
            Forms::Register(&rebate);
        QSignalSpy reopened(&Notifier::Instance(), &Notifier::DatabaseReopened);
        frmOptions options;
        mFixture->Desktop().SetNextAnswer(answer);
        options.cmdRepair_Click();
        Forms::Unregister(&rebate);
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.first().style, 289);
        QCOMPARE(boxes.last().title + " | " + QString::number(boxes.last().style), last);
        const bool ran = answer == vb::vbOK && failAt >= 0;
        QCOMPARE(reopened.count(), ran ? 1 : 0);
        QCOMPARE(QFile::exists(CompactBackupPath()), ran && !failAt);
        QCOMPARE(CountRebates(), 300);
    }
};

QTEST_MAIN(tst_compact)
#include "tst_compact.moc"
