#include "Fixture.h"
#include "RebateRows.h"
#include "app/AppSettings.h"
#include "app/clsRebate.h"
#include "common/core/Globals.h"
#include "data/Database.h"
#include "shell/frmMDI.h"
#include "shell/modMain.h"
#include "shell/modPrevInstance.h"

#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <cstdio>

namespace {
QByteArray Checksum(const QString& path) {
    return QCryptographicHash::hash(ReadFile(path), QCryptographicHash::Sha256);
}

// A plain SQLite connection of the test's own, as another program would hold one.
class OtherProgram {
public:
    explicit OtherProgram(const QString& path) {
        mDb = QSqlDatabase::addDatabase("QSQLITE", "other-program");
        mDb.setDatabaseName(path);
        QVERIFY(mDb.open());
    }
    ~OtherProgram() {
        mDb.close();
        mDb = QSqlDatabase();
        QSqlDatabase::removeDatabase("other-program");
    }
    bool Run(const QString& sql) { return QSqlQuery(mDb).exec(sql); }
    QVariant Value(const QString& sql) {
        QSqlQuery query(mDb);
        return query.exec(sql) && query.next() ? query.value(0) : QVariant();
    }

private:
    QSqlDatabase mDb;
};

// Rows 2 on of the file's first table page overwritten: the header still reads, the rows
// don't.
void DamagePage(const QString& path, int page) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.size() >= qint64(page) * 4096);
    file.seek(qint64(page - 1) * 4096);
    file.write(QByteArray(4096, '\x5a'));
}

// The child's side of the kill test: saves numbered records one by one, printing each
// number once its save has returned, until it is killed.
int SaveForever(const QString& path) {
    std::unique_ptr<Database> db = Database::Open(path);
    auto rs = db->OpenRecordset("select * from Rebates where 0 = 1");
    for (int n = 1;; ++n) {
        rs->AddNew();
        rs->SetField("RebateID", QString::number(n));
        rs->SetField("RebateName", QString("Saved %1").arg(n));
        rs->SetField("Remarks", QString(300, QChar('r')));
        rs->Update();
        std::printf("%d\n", n);
        std::fflush(stdout);
    }
}
} // namespace

class tst_startupfaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        Startup::SetEndProgramHandler([](int) {});
        Startup::SetSplashSeconds(0);
    }
    void cleanup() {
        delete frmMDI::Instance();
        PrevInstance::Release();
        Startup::SetEndProgramHandler(nullptr);
        Startup::SetSplashSeconds(4);
        mFixture.reset();
    }

    // Each cause that keeps the store from being used: its own message, and the file as it
    // was (a file that is no database at all: tst_startup).
    void refusedStore_data() {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("says");
        const auto row = [](const char* name, const char* cause, const char* title,
                            const char* says) {
            QTest::newRow(name) << QString(cause) << QString(title) << QString(says);
        };
        row("damaged page", "damaged", "Corrupt Database File", "is corrupt");
        row("another program's file", "foreign", "Not a Vantry! Vantry! Database",
            "has no table of rebates");
        row("locked by another program", "locked", "Database In Use",
            "Your data in 'Vantry.mdb' is intact");
    }
    void refusedStore() {
        QFETCH(QString, cause);
        QFETCH(QString, title);
        QFETCH(QString, says);
        const QString path = mFixture->DatabasePath();
        std::unique_ptr<OtherProgram> other;
        if (cause == "damaged") {
            QList<RebateRow> rows;
            for (int i = 0; i < 200; ++i)
                rows << RebateRow{.RebateID = QString::number(i), .RebateName = "Row"};
            mFixture->OpenDatabase(rows);
            gDatabase.reset();
            DamagePage(path, 2);
        } else if (cause == "foreign") {
            QVERIFY(QFile::remove(path));
            OtherProgram maker(path);
            QVERIFY(maker.Run("CREATE TABLE Recipes (Name TEXT)"));
        } else {
            other = std::make_unique<OtherProgram>(path);
            QVERIFY(other->Run("PRAGMA locking_mode = EXCLUSIVE"));
            QVERIFY(other->Run("BEGIN EXCLUSIVE"));
        }
        const QByteArray before = Checksum(path);
        QVERIFY(!Main());
        const QStringList shown = mFixture->Desktop().Shown();
        QCOMPARE(shown.size(), 1);
        QVERIFY2(shown[0].startsWith(title + " | 16 | ") && shown[0].contains(says),
                 qPrintable(shown[0]));
        QVERIFY(!frmMDI::Instance());
        QVERIFY(!gDatabase);
        QCOMPARE(Checksum(path), before);
        other.reset();
        QCOMPARE(Checksum(path), before);
    }

    // A folder that can't be written: the store opens read-only, says so, and refuses saves
    // as read-only without touching the file.
    void readOnlyFolder() {
        WriteSetting(Setting::Tips, QStringLiteral("0"));
        const QString folder = mFixture->ProgramDir();
        const auto permissions = QFile::permissions(folder);
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const bool writable = QFile(folder + "probe").open(QIODevice::WriteOnly);
        if (writable) {
            QFile::remove(folder + "probe");
            QFile::setPermissions(folder, permissions);
            QSKIP("folder permissions don't bind this user");
        }
        const QByteArray before = Checksum(mFixture->DatabasePath());
        const bool started = Main();
        QFile::setPermissions(folder, permissions);
        QVERIFY(started);
        QVERIFY(gDatabase->IsReadOnly());
        QCOMPARE(mFixture->Desktop().boxes.value(0).title, QString("Database Read-Only"));
        auto rs = gDatabase->OpenRecordset("select * from Rebates where 0 = 1");
        rs->AddNew();
        rs->SetField("RebateID", "1");
        QCOMPARE(ErrorOf([&] { rs->Update(); }), 3027);
        QCOMPARE(Checksum(mFixture->DatabasePath()), before);
    }

    // A save the store refuses: the caller hears the cause, the record keeps what was typed,
    // and the same record saves once the cause is gone.
    void saveRefusedThenSaved_data() {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<int>("error");
        QTest::newRow("full disk") << "full" << 3026;
        QTest::newRow("write lock held by another program") << "locked" << 3260;
    }
    void saveRefusedThenSaved() {
        QFETCH(QString, cause);
        QFETCH(int, error);
        mFixture->OpenDatabase();
        std::unique_ptr<OtherProgram> other;
        QSqlQuery limit(gDatabase->Connection());
        if (cause == "full") {
            QVERIFY(limit.exec("PRAGMA page_count") && limit.next());
            QVERIFY(limit.exec(QString("PRAGMA max_page_count = %1").arg(limit.value(0).toInt())));
        } else {
            other = std::make_unique<OtherProgram>(mFixture->DatabasePath());
            QVERIFY(other->Run("BEGIN EXCLUSIVE"));
            gDatabase->SetBusyTimeout(400);
        }
        int waits = 0;
        SetStoreWaitHook([&waits](bool waiting) { waits += waiting; });
        gbNewRecord = true;
        clsRebate rebate;
        rebate.SetRebateID("1");
        rebate.SetRebateName("Typed before the fault");
        rebate.SetRemarks(QString(20000, QChar('x'))); // more than the pages left
        QCOMPARE(ErrorOf([&] { rebate.Update(); }), error);
        QCOMPARE(waits > 0, cause == "locked");
        SetStoreWaitHook(nullptr);
        QCOMPARE(CountRebates(), 0);
        QCOMPARE(rebate.RebateName(), QString("Typed before the fault"));

        other.reset();
        if (cause == "full")
            QVERIFY(limit.exec("PRAGMA max_page_count = 1073741823"));
        rebate.Update();
        QCOMPARE(ReadRawRebate("1").value("RebateName").toString(),
                 QString("Typed before the fault"));
    }

    // Killed at any moment of its saves, the program leaves a sound store holding every
    // record whose save had returned.
    void killedDuringSaves() {
        const int attacks = 12;
        int confirmedTotal = 0;
        for (int attack = 1; attack <= attacks; ++attack) {
            QProcess child;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("VANTRY_SAVE_FOREVER", mFixture->DatabasePath());
            child.setProcessEnvironment(environment);
            child.start(QCoreApplication::applicationFilePath(), {});
            QVERIFY(child.waitForStarted());
            // Killed once saving is under way, at a random moment of it.
            QVERIFY(child.waitForReadyRead(20000));
            QTest::qWait(QRandomGenerator::global()->bounded(300));
            child.kill(); // SIGKILL: no chance to tidy up
            QVERIFY(child.waitForFinished(5000));
            const QStringList confirmed =
                QString::fromLatin1(child.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
            QVERIFY(!confirmed.isEmpty());
            OtherProgram store(mFixture->DatabasePath());
            QCOMPARE(store.Value("PRAGMA integrity_check").toString(), QString("ok"));
            const QString kept =
                "SELECT count(*) FROM Rebates WHERE RebateID IN ('" + confirmed.join("','") + "')";
            QCOMPARE(store.Value(kept).toInt(), int(confirmed.size()));
            QVERIFY(store.Run("DELETE FROM Rebates")); // the next child numbers afresh
            confirmedTotal += int(confirmed.size());
        }
        qInfo("%d kills, %d confirmed saves, none lost", attacks, confirmedTotal);
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

int main(int argc, char** argv) {
    if (const QString path = qEnvironmentVariable("VANTRY_SAVE_FOREVER"); !path.isEmpty()) {
        QCoreApplication app(argc, argv);
        return SaveForever(path);
    }
    QApplication app(argc, argv);
    tst_startupfaults test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_startupfaults.moc"
