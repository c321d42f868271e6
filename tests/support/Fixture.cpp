#include "Fixture.h"
#include "shell/Wiring.h"

#include "app/cLogErr.h"
#include "app/clsRebate.h"
#include "common/core/Clock.h"
#include "common/core/Globals.h"
#include "common/core/Settings.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/Database.h"

#include <QFile>
#include <QTest>

Fixture::Fixture() {
    QVERIFY2(mDir.isValid(), "no temporary folder");
    QFile::copy(QStringLiteral(VANTRY_RESERVE_DB), ReservePath());
    QFile::copy(QStringLiteral(VANTRY_RESERVE_DB), DatabasePath());
    QFile::setPermissions(DatabasePath(), QFile::ReadOwner | QFile::WriteOwner);
    QFile::setPermissions(ReservePath(), QFile::ReadOwner | QFile::WriteOwner);
    AppLocation::Override(mDir.path(), QStringLiteral("Vantry"));
    SettingsStore::SetDirectory(mDir.path() + QStringLiteral("/settings"));
    auto desktop = std::make_unique<ScriptedDesktop>();
    mDesktop = desktop.get();
    InstallDesktop(std::move(desktop));
    Clock::SetFixed(QDateTime(kToday, QTime(10, 0, 0)));
    ResetGlobals();
    gErrorLog = std::make_unique<cLogErr>(); // its log file in the temporary program folder
}

Fixture::~Fixture() {
    gDatabase.reset();
    clsRebate::SetSelectedRebateIDSource(nullptr);
    clsRebate::SetRebateFormSource(nullptr);
    gErrorLog.reset();
    InstallDesktop(nullptr);
    Clock::UseSystem();
    SettingsStore::SetDirectory(QString());
    AppLocation::Reset();
    ResetGlobals();
}

QString Fixture::ProgramDir() const {
    return mDir.path() + QLatin1Char('/');
}
QString Fixture::DatabasePath() const {
    return ProgramDir() + QStringLiteral("Vantry.mdb");
}
QString Fixture::ReservePath() const {
    return ProgramDir() + QStringLiteral("Vantry.rdb");
}
QString Fixture::LogPath() const {
    return ProgramDir() + QStringLiteral("Vantry.log");
}

void Fixture::OpenDatabase(const QList<RebateRow>& rows) {
    gDatabase = Database::Open(DatabasePath());
    if (!rows.isEmpty())
        InsertRebates(rows);
}

QString Fixture::LogText() const {
    return QString::fromUtf8(ReadFile(LogPath()));
}

int ErrorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const VbError& error) {
        return error.Number();
    }
    return 0;
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void InitTestResources() {
    Q_INIT_RESOURCE(vantry);
    WireFeatures();
}
