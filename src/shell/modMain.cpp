#include "shell/modMain.h"

#include "app/Backups.h"
#include "app/Compaction.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "data/Database.h"
#include "data/Schema.h"
#include "maintenance/Maintenance.h"
#include "shell/frmMDI.h"
#include "shell/frmSplash.h"
#include "shell/modPrevInstance.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace {
QPointer<frmMDI> gMainForm;
std::function<void(int)> gEndProgram;
int gSplashSeconds = 4;

void MissingFileBox() {
    MsgBox(QStringLiteral(
               "Vantry! Vantry! did not find the file 'Vantry.mdb' in the application directory. "
               "This file is necessary for Vantry! Vantry! to work. Please reinstall Vantry! "
               "Vantry! and this should fix the problem. The program will now terminate."),
           vb::vbCritical, QStringLiteral("Missing File"));
}

void CorruptDatabaseBox() {
    const QString paragraph = QStringLiteral("\r\n\r\n");
    MsgBox(QStringLiteral("The database file 'Vantry.mdb' in the Vantry! Vantry! application "
                          "directory is corrupt. This file is necessary for Vantry! Vantry! to "
                          "work.") +
               paragraph +
               QStringLiteral("Please copy the file 'Vantry.mdb' to a safe location (if you have "
                              "previously entered data in the database), then delete "
                              "'Vantry.mdb' from the application directory. After completing "
                              "these steps, reinstall Vantry! Vantry!  This should get the "
                              "program working again, though you will not be able to access any "
                              "data you entered previously.") +
               paragraph +
               QStringLiteral("If you have data you'd like to try to recover, visit the Vantry! "
                              "Vantry! web site at") +
               kProductWebSite +
               QStringLiteral(" to check for availability of a database repair utility.") +
               paragraph + QStringLiteral("This program will now terminate."),
           vb::vbCritical, QStringLiteral("Corrupt Database File"));
}

void RestoredFromCompactionBox(const QString& restored) {
    MsgBox(QStringLiteral("Vantry! Vantry! did not find the file 'Vantry.mdb' in the application "
                          "directory, because an earlier compaction of the database did not "
                          "finish. Your records were put back from the file '%1', which stays "
                          "in place as a copy.")
               .arg(QFileInfo(restored).fileName()),
           vb::vbInformation, QStringLiteral("Database Restored"));
}

// The store is sound but can't be used now: says why, that nothing was lost, and that the
// program ends.
void StoreUnusableBox(const QString& why, const QString& title) {
    MsgBox(why + QStringLiteral(" Your data in 'Vantry.mdb' is intact: nothing was changed.") +
               QStringLiteral("\r\n\r\nThis program will now terminate."),
           vb::vbCritical, title);
}

// Tells the user why the store could not be opened, in the words of the cause.
void RefusedStoreBox(const VbError& error) {
    switch (error.Number()) {
    case dbError::NotADatabase:
        CorruptDatabaseBox();
        break;
    case dbError::Locked:
        StoreUnusableBox(QStringLiteral("The database file 'Vantry.mdb' is locked by another "
                                        "program. Please close that program (or wait until it "
                                        "has finished), then start Vantry! Vantry! again."),
                         QStringLiteral("Database In Use"));
        break;
    case dbError::DiskFull:
        StoreUnusableBox(QStringLiteral("There is not enough space on the disk holding "
                                        "'Vantry.mdb' to open it. Please make room on the disk, "
                                        "then start Vantry! Vantry! again."),
                         QStringLiteral("Disk Full"));
        break;
    case dbError::TableNotFound:
        MsgBox(QStringLiteral("The file 'Vantry.mdb' in the Vantry! Vantry! application "
                              "directory is not a Vantry! Vantry! database: it has no table of "
                              "rebates. The file was left as it is.\r\n\r\nPlease put your "
                              "own 'Vantry.mdb' back in its place, or move this one elsewhere "
                              "to start with an empty database.\r\n\r\nThis program will now "
                              "terminate."),
               vb::vbCritical, QStringLiteral("Not a Vantry! Vantry! Database"));
        break;
    default:
        StoreUnusableBox(QStringLiteral("Vantry! Vantry! could not open the database file "
                                        "'Vantry.mdb': ") +
                             error.Description(),
                         QStringLiteral("Error Opening Database"));
        break;
    }
}

// Opens the program's store and makes sure it is one: every page reads and it holds the
// rebates. Raises as Database::Open, 3049 for a damaged page, 3078 for a foreign file.
std::unique_ptr<Database> OpenProgramStore(const QString& path) {
    std::unique_ptr<Database> db = Database::Open(path);
    if (const QString damage = db->CheckIntegrity(); !damage.isEmpty())
        throw VbError(dbError::NotADatabase, damage);
    db->OpenRecordset(QStringLiteral("select * from Rebates where 0 = 1"), dbOpenSnapshot);
    if (!db->IsReadOnly())
        AddMissingTables(*db);
    return db;
}

QDateTime WholeSecondsNow() {
    const QDateTime now = QDateTime::currentDateTime();
    return now.addMSecs(-now.time().msec());
}

// Outside the program's folder the data folder gets its own reserve copy, taken from the
// one delivered beside the program or, for an installed program, from its share folder.
void ProvideReserveCopy() {
    const QString name = AppExeName() + QStringLiteral(".rdb");
    const QString reserve = DataPath() + name;
    if (DataPath() == AppPath() || FileExists(reserve))
        return;
    for (const QString& delivered : {AppPath() + name, InstalledReservePath()}) {
        if (FileExists(delivered)) {
            QFile::copy(delivered, reserve);
            return;
        }
    }
}

// A start-up that ends leaves nothing of itself behind in the process.
void AbandonStartup() {
    if (frmSplash* splash = frmSplash::Instance())
        delete splash;
    delete gMainForm.data();
    gDatabase.reset();
}
} // namespace

bool RestoreDatabaseFromRdb() {
    const QString dbPath = DataPath() + AppExeName() + QStringLiteral(".mdb");
    const QString rdbPath = DataPath() + AppExeName() + QStringLiteral(".rdb");
    QFile reserve(rdbPath);
    if (reserve.copy(dbPath)) {
        // A copy keeps the reserve's mode, and a reserve delivered read-only must not make
        // the store read-only.
        QFile::setPermissions(dbPath, QFile::permissions(dbPath) | QFileDevice::WriteOwner);
        return true;
    }
    MsgBox(reserve.errorString(), vb::vbExclamation, QStringLiteral("Error Renaming Vantry.rdb"));
    return false;
}

void SplashDelay(int seconds) {
    const QDateTime deadline = WholeSecondsNow().addSecs(seconds);
    const auto done = [&deadline] {
        const frmSplash* splash = frmSplash::Instance();
        return (splash && splash->lblFlag->text() == QStringLiteral("1")) ||
               WholeSecondsNow() >= deadline;
    };
    if (done())
        return;
    QEventLoop loop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    tick.start(25);
    loop.exec();
}

bool Main() {
    if (CheckPrevInstance())
        return false;
    try {
        gTCRLink = kTCRLink;
        gErrorLog = std::make_unique<cLogErr>(); // Init with every argument left out
        const QString dbPath = DataPath() + AppExeName() + QStringLiteral(".mdb");
        // A compaction that failed half-way may have left the user's data under its own
        // names: that file comes back before the empty reserve copy is ever considered.
        if (const QString restored = RestoreDatabaseFromCompaction(dbPath); !restored.isEmpty())
            RestoredFromCompactionBox(restored);
        if (!FileExists(dbPath)) {
            ProvideReserveCopy();
            if (!FileExists(DataPath() + AppExeName() + QStringLiteral(".rdb")) ||
                !RestoreDatabaseFromRdb()) {
                MissingFileBox();
                AbandonStartup();
                return false;
            }
        }
        auto* splash = new frmSplash;
        splash->show();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        splash->repaint();
        try {
            gDatabase = OpenProgramStore(dbPath);
        } catch (const VbError& error) {
            AbandonStartup();
            RefusedStoreBox(error);
            return false;
        }
        // However the program ends, the store closes while the application still runs.
        static const bool closesAtQuit = static_cast<bool>(
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { gDatabase.reset(); }));
        Q_UNUSED(closesAtQuit);
        gMainForm = new frmMDI;
        SplashDelay(gSplashSeconds);
        delete frmSplash::Instance();
        gMainForm->show();
        if (gDatabase->IsReadOnly())
            MsgBox(QStringLiteral("The database file 'Vantry.mdb' or its folder can't be "
                                  "written to. Your data is intact: Vantry! Vantry! opens it "
                                  "read-only. You can look at your rebates, but no change can "
                                  "be saved until the folder may be written to again."),
                   vb::vbExclamation, QStringLiteral("Database Read-Only"));
    } catch (const std::exception&) {
        // Past the store, whatever failed is told as it always was. The splash goes first so
        // that nothing covers the box.
        AbandonStartup();
        CorruptDatabaseBox();
        return false;
    }
    // From here on a failure neither stops the start nor is reported. A store opened
    // read-only can't change in this run, so it needs no backup.
    if (gDatabase && !gDatabase->IsReadOnly())
        Backups::MakeBackup();
    try {
        if (gMainForm)
            Maintenance::ShowTipOfTheDay(gMainForm);
    } catch (const std::exception&) {
        // The tip is a courtesy: the start goes on without it.
    }
    try {
        if (QWidget* switchboard = Forms::Load(QStringLiteral("frmSwitchboard")))
            if (gMainForm)
                gMainForm->AddChild(switchboard)->show();
    } catch (const std::exception&) {
        // The Switchboard reports its own load failures.
    }
    gAppStarted = true;
    return true;
}

void EndProgram(int exitCode) {
    if (gEndProgram)
        gEndProgram(exitCode);
    else
        QCoreApplication::exit(exitCode);
}

void Startup::SetEndProgramHandler(std::function<void(int)> handler) {
    gEndProgram = std::move(handler);
}

void Startup::SetSplashSeconds(int seconds) {
    gSplashSeconds = seconds;
}

void Startup::UseDeveloperEnvironment() {
    const QString folder = qEnvironmentVariable("VANTRY_PROGRAM_DIR");
    if (!folder.isEmpty())
        AppLocation::Override(QDir(folder).absolutePath(), AppExeName());
    bool ok = false;
    const int quitAfter = qEnvironmentVariableIntValue("VANTRY_QUIT_AFTER", &ok);
    if (ok && quitAfter > 0)
        QTimer::singleShot(quitAfter * 1000, qApp, [] {
            // A modal dialog (the tip of the day at start) runs an event loop of its own, which
            // exit() would hand back to a start-up that goes on: the program ends here, with
            // its store closed first.
            gDatabase.reset();
            std::fflush(nullptr);
            std::_Exit(0);
        });
}
