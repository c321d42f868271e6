#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

// The real program, started from a folder of its own and from one it can't write to.
class tst_datafolder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void storeFollowsTheFolder_data() {
        QTest::addColumn<bool>("writable");
        QTest::newRow("portable copy") << true;
        QTest::newRow("read-only program folder") << false;
    }

    void storeFollowsTheFolder() {
        QFETCH(bool, writable);
        constexpr auto kOpen = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup |
                               QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
        constexpr auto kWritable =
            kOpen | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
        QTemporaryDir base;
        QVERIFY(QFile::setPermissions(base.path(), kOpen | QFile::WriteOwner));
        const QString program = base.filePath("program");
        const QString home = base.filePath("home");
        QVERIFY(QDir().mkdir(program) && QDir().mkdir(home));
        QVERIFY(QFile::copy(VANTRY_RESERVE_DB, program + "/Vantry.rdb"));
        QVERIFY(QFile::setPermissions(program + "/Vantry.rdb",
                                      QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        QVERIFY(QFile::setPermissions(home, kWritable));
        QVERIFY(QFile::setPermissions(program, writable ? kWritable : kOpen));

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("VANTRY_PROGRAM_DIR", program);
        environment.insert("VANTRY_QUIT_AFTER", "8");
        environment.insert("HOME", home);
        environment.insert("XDG_DATA_HOME", home + "/.local/share");
        environment.insert("XDG_CONFIG_HOME", home + "/.config");
        environment.remove("XDG_RUNTIME_DIR");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        // Root writes into any folder: the program runs as nobody, whom permissions bind.
        if (geteuid() == 0)
            process.start("setpriv",
                          {"--reuid=65534", "--regid=65534", "--clear-groups", VANTRY_EXECUTABLE});
        else
            process.start(VANTRY_EXECUTABLE, {});
        QVERIFY(process.waitForStarted());
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);

        const QString dataFolder = home + "/.local/share/Vantry/";
        const QString store = (writable ? program + "/" : dataFolder) + "Vantry.mdb";
        QCOMPARE(QFile::exists(program + "/Vantry.mdb"), writable);
        QCOMPARE(QFile::exists(dataFolder + "Vantry.rdb"), !writable);
        // The store copied from a read-only reserve can be written.
        QVERIFY(QFile::permissions(store) & QFile::WriteOwner);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "check");
            db.setDatabaseName(store);
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.exec("SELECT COUNT(*) FROM Rebates") && query.next());
            QCOMPARE(query.value(0).toInt(), 0);
        }
        QSqlDatabase::removeDatabase("check");
        QVERIFY(QFile::setPermissions(program, kWritable));
    }
};

QTEST_GUILESS_MAIN(tst_datafolder)
#include "tst_datafolder.moc"
