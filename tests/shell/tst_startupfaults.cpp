#include "Fixture.h"
#include "RebateRows.h"
#include "app/AppSettings.h"
#include "app/clsRebate.h"
#include "common/core/Globals.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "common/ui/HandlerTrap.h"
#include "common/ui/Help.h"
#include "data/Database.h"
#include "shell/VantryApplication.h"
#include "shell/frmMDI.h"
#include "shell/frmSplash.h"
#include "shell/modMain.h"
#include "shell/modPrevInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMainWindow>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSysInfo>
#include <QTest>
#include <cstdio>
#include <stdexcept>

namespace {
const QString kMissingFile =
    "Vantry! Vantry! did not find the file 'Vantry.mdb' in the application directory. This file "
    "is necessary for Vantry! Vantry! to work. Please reinstall Vantry! Vantry! and this should "
    "fix the problem. The program will now terminate.";

QString CorruptText() {
    return "The database file 'Vantry.mdb' in the Vantry! Vantry! application directory is "
           "corrupt. This file is necessary for Vantry! Vantry! to work.\r\n\r\n"
           "Please copy the file 'Vantry.mdb' to a safe location (if you have previously entered "
           "data in the database), then delete 'Vantry.mdb' from the application directory. After "
           "completing these steps, reinstall Vantry! Vantry!  This should get the program "
           "working again, though you will not be able to access any data you entered "
           "previously.\r\n\r\n"
           "If you have data you'd like to try to recover, visit the Vantry! Vantry! web site at" +
           kProductWebSite +
           " to check for availability of a database repair utility.\r\n\r\n"
           "This program will now terminate.";
}

bool Listening(const QString& name) {
    QLocalSocket probe;
    probe.connectToServer(name);
    const bool connected = probe.waitForConnected(200);
    probe.abort();
    return connected;
}

// A widget whose key handler fails, as a buggy event handler would, trapped at the handler
// as the program's handlers are.
class FailingWidget : public QWidget {
protected:
    void keyPressEvent(QKeyEvent* event) override {
        TrapHandlerErrors(this, [this, event] {
            if (event->key() == Qt::Key_A)
                throw VbError(13, "Type mismatch");
            if (event->key() == Qt::Key_B)
                throw std::runtime_error("out of order");
            if (event->key() == Qt::Key_C)
                throw 42; // nothing the program would throw, and still no end of it
            ++keys;
        });
    }

public:
    int keys = 0;
};

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
        mEnded = 0;
        Startup::SetEndProgramHandler([this](int) { ++mEnded; });
        Startup::SetSplashSeconds(0);
        // The Tip of the Day would wait modally in the middle of each start.
        WriteSetting(Setting::Tips, QStringLiteral("0"));
    }

    void cleanup() {
        delete frmMDI::Instance();
        Help::Quit();
        App::SetHelpFile(QString());
        Forms::SetFactory("frmSwitchboard", nullptr);
        PrevInstance::Release();
        Startup::SetEndProgramHandler(nullptr);
        mFixture.reset();
    }

    // A start that goes through: over the store, over the reserve copy when the store is
    // missing, and past the lock file a copy that crashed left behind.
    void startsWithDatabase_data() {
        QTest::addColumn<QString>("before");
        QTest::newRow("store in place") << "";
        QTest::newRow("store missing: the reserve is copied") << "no store";
        QTest::newRow("stale lock") << "stale lock";
    }

    void startsWithDatabase() {
        QFETCH(QString, before);
        if (before == "no store") {
            QVERIFY(QFile::remove(mFixture->DatabasePath()));
        } else if (before == "stale lock") {
            QFile lock(PrevInstance::LockPath());
            QVERIFY(lock.open(QIODevice::WriteOnly));
            lock.write("2147483000\nvantry\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        }
        bool startedWhenLoaded = true;
        Forms::SetFactory("frmSwitchboard", [&startedWhenLoaded] {
            startedWhenLoaded = gAppStarted;
            auto* form = new QWidget;
            form->setObjectName("frmSwitchboard");
            form->setWindowTitle("Switchboard");
            Forms::Register(form);
            return form;
        });
        QVERIFY(Main());
        frmMDI* main = frmMDI::Instance();
        QVERIFY(main && main->isVisible());
        QVERIFY(!frmSplash::Instance());
        QVERIFY(gDatabase && gDatabase->IsOpen());
        QCOMPARE(gDatabase->Name(), mFixture->DatabasePath());
        if (before == "no store")
            QCOMPARE(ReadFile(mFixture->DatabasePath()), ReadFile(mFixture->ReservePath()));
        QCOMPARE(gTCRLink, kTCRLink);
        QCOMPARE(App::HelpFile(), mFixture->ProgramDir() + "vantry.hlp");
        QVERIFY(gAppStarted);
        QVERIFY(!startedWhenLoaded);
        QCOMPARE(main->ActiveFormName(), QString("frmSwitchboard"));
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
        QVERIFY(!QFile::exists(mFixture->LogPath()));
        QCOMPARE(mEnded, 0);
    }

    // Each cause that keeps the store from being used: its own message (whole, or the words
    // that tell it apart), and the file as it was. A directory in the way refuses the reserve's
    // copy whoever runs the test (a folder without write permission would move the store to the
    // user's data folder instead).
    void refusedStart_data() {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("says");
        const auto row = [](const char* cause, const char* title, const QString& says) {
            QTest::newRow(cause) << QString(cause) << QString(title) << says;
        };
        row("both files missing", "Missing File", kMissingFile);
        row("directory in the way", "Missing File", kMissingFile);
        row("not a database", "Corrupt Database File", CorruptText());
        row("zero bytes", "Corrupt Database File", CorruptText());
        row("damaged page", "Corrupt Database File", "is corrupt");
        row("another program's file", "Not a Vantry! Vantry! Database", "has no table of rebates");
        row("locked", "Database In Use", "Your data in 'Vantry.mdb' is intact");
    }

    void refusedStart() {
        QFETCH(QString, cause);
        QFETCH(QString, title);
        QFETCH(QString, says);
        const QString path = mFixture->DatabasePath();
        std::unique_ptr<OtherProgram> other;
        if (cause == "both files missing") {
            QVERIFY(QFile::remove(path));
            QVERIFY(QFile::remove(mFixture->ReservePath()));
        } else if (cause == "directory in the way") {
            QVERIFY(QFile::remove(path) && QDir().mkdir(path));
        } else if (cause == "not a database" || cause == "zero bytes") {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            if (cause == "not a database")
                file.write(QByteArray("This is not a database at all.\n").repeated(200));
        } else if (cause == "damaged page") {
            QList<RebateRow> rows;
            for (int i = 0; i < 200; ++i)
                rows << RebateRow{.RebateID = QString::number(i), .RebateName = "Row"};
            mFixture->OpenDatabase(rows);
            gDatabase.reset();
            DamagePage(path, 2);
        } else if (cause == "another program's file") {
            QVERIFY(QFile::remove(path));
            OtherProgram maker(path);
            QVERIFY(maker.Run("CREATE TABLE Recipes (Name TEXT)"));
        } else {
            other = std::make_unique<OtherProgram>(path);
            QVERIFY(other->Run("PRAGMA locking_mode = EXCLUSIVE"));
            QVERIFY(other->Run("BEGIN EXCLUSIVE"));
        }
        const QByteArray before = Checksum(path);
        bool splashShown = true;
        mFixture->Desktop().OnNextBox(
            [&splashShown](const ScriptedDesktop::Box&) { splashShown = frmSplash::Instance(); });
        QVERIFY(!Main());
        if (cause == "both files missing")
            QVERIFY(!splashShown);
        QStringList shown = mFixture->Desktop().Shown();
        if (cause == "directory in the way") {
            const QString renaming = "Error Renaming Vantry.rdb | 48 | ";
            QVERIFY2(shown.value(0).startsWith(renaming) && shown[0].size() > renaming.size(),
                     qPrintable(shown.value(0)));
            shown.removeFirst();
        }
        if (says.size() > 100) {
            QCOMPARE(shown, QStringList{title + " | 16 | " + says});
        } else {
            QCOMPARE(shown.size(), 1);
            QVERIFY2(shown[0].startsWith(title + " | 16 | ") && shown[0].contains(says),
                     qPrintable(shown[0]));
        }
        QCOMPARE(QFile::exists(path), cause != "both files missing");
        QCOMPARE(QFile::exists(mFixture->ReservePath()), cause != "both files missing");
        QVERIFY(!frmMDI::Instance());
        QVERIFY(!frmSplash::Instance());
        QVERIFY(!gDatabase);
        QVERIFY(!gAppStarted);
        QCOMPARE(Checksum(path), before);
        other.reset();
        QCOMPARE(Checksum(path), before);
    }

    void secondCopyActivatesFirst_data() {
        QTest::addColumn<bool>("otherTemp");
        QTest::newRow("same environment") << false;
        QTest::newRow("another temporary folder") << true;
    }

    void secondCopyActivatesFirst() {
        QFETCH(bool, otherTemp);
        const QString name = PrevInstance::ServerName();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("VANTRY_PROGRAM_DIR", mFixture->ProgramDir());
        environment.insert("XDG_CONFIG_HOME", mFixture->ProgramDir() + "config");
        environment.insert("VANTRY_QUIT_AFTER", "60");
        QProcess first;
        first.setProcessEnvironment(environment);
        first.start(VANTRY_EXECUTABLE, {});
        QVERIFY(first.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(Listening(name), 15000);
        const QDateTime databaseTime = QFileInfo(mFixture->DatabasePath()).lastModified();

        QProcess second;
        if (otherTemp) {
            QVERIFY(QDir().mkpath(mFixture->ProgramDir() + "tmp"));
            environment.insert("TMPDIR", mFixture->ProgramDir() + "tmp");
        }
        second.setProcessEnvironment(environment);
        second.start(VANTRY_EXECUTABLE, {});
        QVERIFY(second.waitForFinished(10000));
        QVERIFY(second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0);
        QCOMPARE(first.state(), QProcess::Running);
        QVERIFY(!QFile::exists(mFixture->LogPath()));
        QCOMPARE(QFileInfo(mFixture->DatabasePath()).lastModified(), databaseTime);

        first.kill();
        first.waitForFinished(5000);
        QLocalServer::removeServer(name);
    }

    void activateWindowByTitle() {
        QMainWindow window;
        window.setWindowTitle("Vantry! Vantry! - [Switchboard]");
        window.showMinimized();
        QTRY_VERIFY(window.isMinimized());
        QCOMPARE(FindWindowByTitlePrefix("vantry! VANTRY!"), &window);
        QVERIFY(!FindWindowByTitlePrefix("Vantry! Vantry! Help"));
        QCOMPARE(ActivatePrevInstance("Vantry! Vantry!"), &window);
        QTRY_VERIFY(!window.isMinimized());
        QVERIFY(!ActivatePrevInstance("Nothing like it"));
    }

    void escapedErrorsAreLogged() {
        QVERIFY(qobject_cast<VantryApplication*>(qApp));
        FailingWidget widget;
        widget.setObjectName("picFailing");
        widget.show();
        for (const auto key : {Qt::Key_A, Qt::Key_B, Qt::Key_C, Qt::Key_D})
            QTest::keyClick(&widget, key);
        QCOMPARE(widget.keys, 1); // still running, still handling input
        const auto& boxes = mFixture->Desktop().boxes;
        QCOMPARE(boxes.size(), 3);
        QVERIFY(mFixture->Desktop().Shown()[0].startsWith(
            "Vantry! Vantry! Error | 48 | Type mismatch\r\n\r\n"));
        QVERIFY(boxes[1].prompt.startsWith("out of order\r\n\r\n"));
        QVERIFY(boxes[2].prompt.startsWith("Internal error\r\n\r\n"));
        for (const char* line : {"Number:\t\t13", "Number:\t\t51", "Source:\t\tpicFailing"})
            QVERIFY(mFixture->LogText().contains(QString("Error %1\r\n").arg(line)));
    }

    // A folder that can't be written: the store opens read-only, says so, and refuses saves
    // as read-only without touching the file.
    void readOnlyFolder() {
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
        for (int attack = 0; attack < 12; ++attack) {
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
        }
    }

private:
    std::unique_ptr<Fixture> mFixture;
    int mEnded = 0;
};

int main(int argc, char** argv) {
    if (const QString path = qEnvironmentVariable("VANTRY_SAVE_FOREVER"); !path.isEmpty()) {
        QCoreApplication app(argc, argv);
        return SaveForever(path);
    }
    VantryApplication app(argc, argv);
    tst_startupfaults test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_startupfaults.moc"
