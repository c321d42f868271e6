#include "data/StoreBackup.h"

#include "common/core/VbError.h"
#include "data/Database.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <sqlite3.h>

namespace {

// Pages per backup step: small enough for the fault hook to fall between steps of a store of
// a few hundred kilobytes, large enough that a store of 100,000 records takes few steps.
constexpr int kPagesPerStep = 256;

// How long a copy waits for a lock another program holds on either file, since its last step.
constexpr int kLockWaitMs = 2000;

// One connection of the C interface, closed however the scope ends.
class Handle {
public:
    Handle(const QString& path, int flags) {
        mResult = sqlite3_open_v2(QFile::encodeName(path).constData(), &mDb, flags, nullptr);
    }
    ~Handle() { sqlite3_close(mDb); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    bool Ok() const { return mResult == SQLITE_OK; }
    sqlite3* Get() const { return mDb; }
    QString Message() const { return QString::fromUtf8(sqlite3_errmsg(mDb)); }

private:
    sqlite3* mDb = nullptr;
    int mResult = SQLITE_ERROR;
};

VbError Failure(int code, const QString& message) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return VbError(dbError::Locked, message);
    case SQLITE_FULL:
        return VbError(dbError::DiskFull, message);
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return VbError(dbError::ReadOnly, message);
    case SQLITE_CANTOPEN:
        return VbError(dbError::CannotOpen, message);
    default:
        return VbError(dbError::DiskError, message);
    }
}

// The single value of a one-row statement; false when it can't be read.
bool ReadOne(sqlite3* db, const char* sql, QString& value) {
    sqlite3_stmt* statement = nullptr;
    bool ok = false;
    if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
        value = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
        ok = true;
    }
    sqlite3_finalize(statement);
    return ok;
}

} // namespace

void StoreBackup::Copy(const QString& from, const QString& to,
                       const std::function<void()>& betweenSteps) {
    if (!QFileInfo::exists(from))
        throw VbError(dbError::FileNotFound, QStringLiteral("'%1' isn't there.").arg(from));
    const bool created = !QFileInfo::exists(to);
    bool done = false;
    try {
        Handle source(from, SQLITE_OPEN_READONLY);
        if (!source.Ok())
            throw VbError(dbError::CannotOpen, source.Message());
        Handle target(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        if (!target.Ok())
            throw Failure(sqlite3_errcode(target.Get()),
                          target.Message() + QStringLiteral(": ") + to);
        sqlite3_busy_timeout(target.Get(), kLockWaitMs);
        sqlite3_backup* backup = sqlite3_backup_init(target.Get(), "main", source.Get(), "main");
        if (!backup)
            throw Failure(sqlite3_errcode(target.Get()), target.Message());
        int step = SQLITE_OK;
        try {
            // A lock that outlasts the wait ends the copy: it may never be released.
            QElapsedTimer sinceProgress;
            sinceProgress.start();
            while ((step = sqlite3_backup_step(backup, kPagesPerStep)) == SQLITE_OK ||
                   ((step == SQLITE_BUSY || step == SQLITE_LOCKED) &&
                    sinceProgress.elapsed() < kLockWaitMs)) {
                if (step == SQLITE_OK)
                    sinceProgress.restart();
                if (betweenSteps)
                    betweenSteps();
            }
        } catch (...) {
            // Finishing early rolls the target's write transaction back.
            sqlite3_backup_finish(backup);
            throw;
        }
        sqlite3_backup_finish(backup);
        if (step != SQLITE_DONE)
            throw Failure(step,
                          QString::fromUtf8(sqlite3_errstr(step)) + QStringLiteral(": ") + to);
        // A new copy is one file of its own, readable without the store's write-ahead log.
        if (created)
            sqlite3_exec(target.Get(), "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
        done = true;
    } catch (...) {
        if (created && !done)
            QFile::remove(to);
        throw;
    }
}

void StoreBackup::CompactInto(Database& db, const QString& to) {
    QSqlQuery vacuum(db.Connection());
    vacuum.prepare(QStringLiteral("VACUUM INTO ?"));
    vacuum.addBindValue(to);
    if (!vacuum.exec())
        throw VbError(dbError::DiskError, vacuum.lastError().text());
}

qint64 StoreBackup::CountRebates(const QString& path) {
    Handle db(path, SQLITE_OPEN_READONLY);
    QString count;
    if (!db.Ok() || !ReadOne(db.Get(), "SELECT Count(*) FROM Rebates", count))
        return -1;
    return count.toLongLong();
}

QString StoreBackup::CheckStore(const QString& path) {
    Handle db(path, SQLITE_OPEN_READONLY);
    if (!db.Ok())
        return db.Message();
    QString result;
    if (!ReadOne(db.Get(), "PRAGMA quick_check(1)", result))
        return db.Message();
    if (result != QLatin1String("ok"))
        return result;
    QString tables;
    if (!ReadOne(db.Get(),
                 "SELECT Count(*) FROM sqlite_master WHERE type = 'table' AND name = 'Rebates'",
                 tables) ||
        tables != QLatin1String("1"))
        return QStringLiteral("It holds no table of rebates.");
    return QString();
}
