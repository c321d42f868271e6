#include "Fixture.h"
#include "app/AppSettings.h"
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

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QSysInfo>
#include <QTest>
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
} // namespace

class tst_startup : public QObject {
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
        QCOMPARE(QDir::currentPath() + "/", mFixture->ProgramDir());
        QVERIFY(mFixture->Desktop().boxes.isEmpty());
        QVERIFY(!QFile::exists(mFixture->LogPath()));
        QCOMPARE(mEnded, 0);
    }

    void refusedStart_data() {
        QTest::addColumn<QByteArray>("store"); // the store's bytes; null: both files missing
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("prompt");
        QTest::newRow("both files missing") << QByteArray() << "Missing File" << kMissingFile;
        QTest::newRow("corrupt database")
            << QByteArray("This is not a database at all.\n").repeated(200)
            << "Corrupt Database File" << CorruptText();
        QTest::newRow("zero bytes") << QByteArray("") << "Corrupt Database File" << CorruptText();
    }

    void refusedStart() {
        QFETCH(QByteArray, store);
        QFETCH(QString, title);
        QFETCH(QString, prompt);
        const bool present = !store.isNull();
        if (present) {
            QFile file(mFixture->DatabasePath());
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(store);
        } else {
            QVERIFY(QFile::remove(mFixture->DatabasePath()));
            QVERIFY(QFile::remove(mFixture->ReservePath()));
        }
        bool splashShown = true;
        mFixture->Desktop().OnNextBox(
            [&splashShown](const ScriptedDesktop::Box&) { splashShown = frmSplash::Instance(); });
        QVERIFY(!Main());
        if (!present)
            QVERIFY(!splashShown);
        QCOMPARE(mFixture->Desktop().Shown(), QStringList{title + " | 16 | " + prompt});
        QCOMPARE(QFile::exists(mFixture->DatabasePath()), present);
        QCOMPARE(ReadFile(mFixture->DatabasePath()), present ? store : QByteArray());
        QVERIFY(!frmMDI::Instance());
        QVERIFY(!frmSplash::Instance());
        QVERIFY(!gAppStarted);
    }

    void folderRefusesTheCopy() {
        // A directory in the way refuses the copy whoever runs the test; a folder without
        // write permission would move the store to the user's data folder instead.
        QVERIFY(QFile::remove(mFixture->DatabasePath()));
        QVERIFY(QDir().mkdir(mFixture->DatabasePath()));

        QVERIFY(!Main());
        const QStringList shown = mFixture->Desktop().Shown();
        QCOMPARE(shown.size(), 2);
        const QString renaming = "Error Renaming Vantry.rdb | 48 | ";
        QVERIFY2(shown[0].startsWith(renaming) && shown[0].size() > renaming.size(),
                 qPrintable(shown[0]));
        QCOMPARE(shown[1], "Missing File | 16 | " + kMissingFile);
        QVERIFY(QFile::exists(mFixture->ReservePath()));
        QVERIFY(!frmMDI::Instance());
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

        first.terminate();
        if (!first.waitForFinished(5000))
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
        QVERIFY(!FindWindowByTitlePrefix(QString()));
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

private:
    std::unique_ptr<Fixture> mFixture;
    int mEnded = 0;
};

int main(int argc, char** argv) {
    VantryApplication app(argc, argv);
    tst_startup test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_startup.moc"
