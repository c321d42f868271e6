#include "shell/modMain.h"

#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "data/Database.h"
#include "shell/frmMDI.h"
#include "shell/frmSplash.h"
#include "shell/modPrevInstance.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTimer>

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
        gDatabase = Database::Open(dbPath);
        // However the program ends, the store closes while the application still runs.
        static const bool closesAtQuit = static_cast<bool>(
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { gDatabase.reset(); }));
        Q_UNUSED(closesAtQuit);
        gMainForm = new frmMDI;
        SplashDelay(gSplashSeconds);
        delete frmSplash::Instance();
        gMainForm->show();
    } catch (const std::exception&) {
        // Whatever failed, the user is told the database is corrupt, as always. The splash
        // goes first so that nothing covers the box.
        AbandonStartup();
        CorruptDatabaseBox();
        return false;
    }
    // From here on a failure neither stops the start nor is reported. The Tip of the Day
    // comes with the support forms.
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
        QTimer::singleShot(quitAfter * 1000, qApp, [] { QCoreApplication::exit(0); });
}
