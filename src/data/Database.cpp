#include "data/Database.h"

#include "common/core/modUtilities.h"
#include "data/StoreConnection.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <algorithm>
#include <atomic>
#include <optional>
#include <sqlite3.h>

std::unique_ptr<Database> gDatabase;

Database& TheDatabase() {
    if (!gDatabase)
        throw VbError(VbError::ObjectNotSet);
    return *gDatabase;
}

namespace store {

QSqlDatabase& Connection::Checked() {
    if (!IsOpen())
        throw VbError(dbError::ObjectClosed, QStringLiteral("Object invalid or no longer set."));
    return db;
}

const TableInfo* Connection::Table(const QString& name) {
    const QString key = name.toLower();
    if (auto found = tables.constFind(key); found != tables.constEnd())
        return &found.value();
    QSqlQuery query(Checked());
    query.setForwardOnly(true);
    // Only real tables: a view has no rowid to write back through.
    query.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                 "lower(name) = lower(?)"));
    query.addBindValue(name);
    if (!query.exec())
        throw SqlFailure(query.lastError(), dbError::QueryError);
    if (!query.next())
        return nullptr;
    TableInfo info;
    info.name = query.value(0).toString();
    query.finish();
    query.prepare(QStringLiteral("SELECT name, type, pk FROM pragma_table_info(?)"));
    query.addBindValue(info.name);
    if (!query.exec())
        throw SqlFailure(query.lastError(), dbError::QueryError);
    int keyParts = 0;
    while (query.next()) {
        if (query.value(2).toInt() > 0) {
            ++keyParts;
            info.key = query.value(0).toString();
        }
        info.columns.append(query.value(0).toString());
        info.kinds.append(KindOfDeclaredType(query.value(1).toString()));
    }
    if (keyParts != 1)
        info.key.clear();
    return &tables.insert(key, info).value();
}

Kind KindOfDeclaredType(const QString& declaredType) {
    const QString type = declaredType.trimmed().toUpper();
    if (type == QLatin1String("TEXT"))
        return Kind::Text;
    if (type == QLatin1String("CURRENCY"))
        return Kind::Money;
    if (type == QLatin1String("DATE"))
        return Kind::Date;
    if (type == QLatin1String("BOOLEAN"))
        return Kind::Boolean;
    return Kind::Other;
}

namespace {
std::function<void(bool)> gWaitHook;
constexpr int kLockTryMs = 100; // the engine's own wait per try

bool IsLocked(const QSqlError& error) {
    const int code = error.nativeErrorCode().toInt() & 0xff;
    return code == 5 || code == 6; // SQLITE_BUSY, SQLITE_LOCKED
}
} // namespace

bool ExecWaiting(QSqlQuery& query, int waitMs) {
    if (query.exec() || !IsLocked(query.lastError()))
        return query.lastError().type() == QSqlError::NoError;
    QElapsedTimer waited;
    waited.start();
    bool done = false;
    while (!done && IsLocked(query.lastError()) && waited.elapsed() < waitMs) {
        if (gWaitHook)
            gWaitHook(true);
        done = query.exec();
    }
    if (gWaitHook)
        gWaitHook(false);
    return done;
}

VbError SqlFailure(const QSqlError& error, int fallback) {
    const QString engineText = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    // Extended result codes: the primary code is the low byte.
    const int code = error.nativeErrorCode().toInt() & 0xff;
    switch (code) {
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return VbError(dbError::Locked,
                       QStringLiteral("Couldn't update; the database file is locked by another "
                                      "program (%1).")
                           .arg(engineText));
    case 8: // SQLITE_READONLY
        return VbError(
            dbError::ReadOnly,
            QStringLiteral("Cannot update. Database or object is read-only (%1).").arg(engineText));
    case 10: // SQLITE_IOERR
        return VbError(dbError::DiskError,
                       QStringLiteral("Disk or network error (%1).").arg(engineText));
    case 13: // SQLITE_FULL
        return VbError(dbError::DiskFull,
                       QStringLiteral("Not enough space on disk (%1).").arg(engineText));
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return VbError(dbError::NotADatabase,
                       QStringLiteral("The database file is damaged or is not a database "
                                      "(%1).")
                           .arg(engineText));
    case 19: // SQLITE_CONSTRAINT
        return VbError(VbError::DuplicateKey, VbError::StandardDescription(VbError::DuplicateKey) +
                                                  QStringLiteral(" (%1)").arg(engineText));
    default:
        break;
    }
    if (engineText.startsWith(QLatin1String("no such table")))
        return VbError(dbError::TableNotFound,
                       QStringLiteral("The database engine cannot find the input table or "
                                      "query: %1.")
                           .arg(engineText));
    if (fallback == dbError::QueryError)
        return VbError(fallback, QStringLiteral("Error in the query: %1.").arg(engineText));
    return VbError(fallback, engineText);
}

} // namespace store

namespace {
std::atomic<int> gConnectionCounter{0};
}

void SetStoreWaitHook(std::function<void(bool)> hook) {
    store::gWaitHook = std::move(hook);
}

std::unique_ptr<Database> Database::Open(const QString& path) {
    if (!FileExists(path))
        throw VbError(dbError::FileNotFound, QStringLiteral("Couldn't find file '%1'.").arg(path));

    // The engine would take a file of no bytes for a new, empty database; it is a store that
    // lost everything, as unusable as a damaged one.
    if (QFileInfo(path).size() == 0)
        throw VbError(dbError::NotADatabase,
                      QStringLiteral("Can't open database '%1'. The file is empty.").arg(path));

    auto connection = std::make_shared<store::Connection>();
    connection->connectionName = QStringLiteral("vantry-%1").arg(++gConnectionCounter);
    connection->path = path;
    const QString fileUrl =
        QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded);

    auto drop = [&] {
        connection->db.close();
        connection->db = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection->connectionName);
    };
    // Opens the file with the URI's parameters and reads its header (SQLite reads it lazily,
    // so a foreign file is only refused then). Returns the engine's refusal, empty when the
    // file reads.
    bool hasSchema = false;
    auto attempt = [&](const QString& parameters) -> std::optional<QSqlError> {
        connection->db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection->connectionName);
        // Short waits of the engine's own: longer ones are ExecWaiting's, which can tell the
        // user.
        connection->db.setConnectOptions(
            QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(store::kLockTryMs));
        connection->db.setDatabaseName(fileUrl + parameters);
        if (!connection->db.open()) {
            const QSqlError error = connection->db.lastError();
            drop();
            return error;
        }
        QSqlQuery probe(connection->db);
        if (probe.exec(QStringLiteral("PRAGMA schema_version")) && probe.next()) {
            hasSchema = probe.value(0).toInt() > 0;
            return std::nullopt;
        }
        const QSqlError error = probe.lastError();
        probe.finish();
        drop();
        return error;
    };

    // mode=rw: open for writing but never create the file.
    std::optional<QSqlError> refusal = attempt(QStringLiteral("?mode=rw"));
    const int code = refusal ? refusal->nativeErrorCode().toInt() & 0xff : 0;
    // A folder or file that can't be written (the engine can't make its lock files there):
    // the store is still read, unchanged and without locks, and every save is refused as
    // read-only.
    if (refusal && (code == 8 || code == 14) && QFileInfo(path).isReadable()) {
        if (!attempt(QStringLiteral("?mode=ro&immutable=1"))) {
            connection->readOnly = true;
            refusal.reset();
        }
    }
    if (refusal) {
        const QString reason =
            refusal->databaseText().isEmpty() ? refusal->text() : refusal->databaseText();
        switch (code) {
        case 5: // SQLITE_BUSY
        case 6: // SQLITE_LOCKED
            throw VbError(dbError::Locked,
                          QStringLiteral("The file '%1' is locked by another program (%2).")
                              .arg(path, reason));
        case 13: // SQLITE_FULL
            throw VbError(dbError::DiskFull,
                          QStringLiteral("Not enough space on disk (%1).").arg(reason));
        case 11: // SQLITE_CORRUPT
        case 26: // SQLITE_NOTADB
            throw VbError(dbError::NotADatabase,
                          QStringLiteral("Can't open database '%1'. It may not be a database "
                                         "that this program recognizes, or the file may be "
                                         "corrupt (%2).")
                              .arg(path, reason));
        default:
            throw VbError(dbError::CannotOpen,
                          QStringLiteral("Couldn't open file '%1' (%2).").arg(path, reason));
        }
    }
    // A write-ahead log keeps the save of one record to one short sync however large the
    // table grows. It is only set on a real database (an empty file stays untouched), and
    // where the folder can't hold the log the engine keeps its default journal.
    // Only this program's own file is switched: another program's file stays as it is.
    if (hasSchema && !connection->readOnly && connection->Table(QStringLiteral("Rebates")))
        QSqlQuery(connection->db).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    return std::unique_ptr<Database>(new Database(std::move(connection)));
}

Database::Database(std::shared_ptr<store::Connection> connection)
    : mConnection(std::move(connection)) {}

Database::~Database() {
    Close();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& sql, int type,
                                                   const QVariantList& params) {
    if (type != dbOpenDynaset && type != dbOpenSnapshot)
        throw VbError(dbError::InvalidArgument, QStringLiteral("Invalid argument."));
    mConnection->Checked();
    return std::unique_ptr<Recordset>(
        new Recordset(mConnection, sql, type == dbOpenSnapshot, params));
}

void Database::Scan(const QString& sql, const QStringList& params,
                    const std::function<void(const ScannedRow&)>& visit) {
    const QVariant handle = mConnection->Checked().driver()->handle();
    sqlite3* db = *static_cast<sqlite3* const*>(handle.constData());
    const auto failure = [db](int code) {
        return store::SqlFailure(QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(db)),
                                           QSqlError::StatementError, QString::number(code)),
                                 dbError::QueryError);
    };
    sqlite3_stmt* statement = nullptr;
    const QByteArray text = sql.toUtf8();
    if (const int code = sqlite3_prepare_v2(db, text.constData(), static_cast<int>(text.size()),
                                            &statement, nullptr);
        code != SQLITE_OK)
        throw failure(code);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> finalize(statement,
                                                                         sqlite3_finalize);
    for (int i = 0; i < params.size(); ++i) {
        const QString& value = params[i];
        if (const int code =
                sqlite3_bind_text16(statement, i + 1, value.utf16(),
                                    static_cast<int>(value.size() * 2), SQLITE_TRANSIENT);
            code != SQLITE_OK)
            throw failure(code);
    }
    std::vector<store::Kind> kinds;
    for (int c = 0; c < sqlite3_column_count(statement); ++c) {
        const char* declared = sqlite3_column_decltype(statement, c);
        kinds.push_back(
            store::KindOfDeclaredType(declared ? QString::fromUtf8(declared) : QString()));
    }
    const ScannedRow row(statement, std::move(kinds));
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW)
        visit(row);
    if (code != SQLITE_DONE)
        throw failure(code);
}

int Database::Execute(const QString& sql, const QVariantList& params) {
    QSqlQuery query(mConnection->Checked());
    if (!query.prepare(sql))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    for (const QVariant& value : params)
        query.addBindValue(value);
    if (!query.exec())
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    return query.numRowsAffected();
}

void Database::SetBusyTimeout(int milliseconds) {
    mConnection->Checked();
    mConnection->lockWaitMs = milliseconds;
    // A pragma takes no bound value; the number is formatted from an int, never from text.
    Execute(
        QStringLiteral("PRAGMA busy_timeout = %1").arg(std::min(milliseconds, store::kLockTryMs)));
}

int Database::BusyTimeout() const {
    return mConnection->lockWaitMs;
}

void Database::BeginTrans() {
    QSqlDatabase& db = mConnection->Checked();
    if (!db.transaction())
        throw store::SqlFailure(db.lastError(), dbError::DiskError);
}

void Database::CommitTrans() {
    QSqlDatabase& db = mConnection->Checked();
    if (!db.commit())
        throw store::SqlFailure(db.lastError(), dbError::NoTransaction);
}

void Database::Rollback() {
    QSqlDatabase& db = mConnection->Checked();
    if (!db.rollback())
        throw store::SqlFailure(db.lastError(), dbError::NoTransaction);
}

void Database::InTransaction(const std::function<void()>& writes) {
    BeginTrans();
    try {
        writes();
        CommitTrans();
    } catch (...) {
        try {
            Rollback();
        } catch (const VbError&) {
            // SQLite may have ended the transaction itself.
        }
        throw;
    }
}

void Database::Close() {
    if (!mConnection->db.isValid())
        return;
    mConnection->db.close();
    mConnection->db = QSqlDatabase();
    QSqlDatabase::removeDatabase(mConnection->connectionName);
}

bool Database::IsOpen() const {
    return mConnection->IsOpen();
}

bool Database::IsReadOnly() const {
    return mConnection->readOnly;
}

QString Database::CheckIntegrity() {
    QSqlQuery query(mConnection->Checked());
    query.setForwardOnly(true);
    // quick_check reads every page once (no index cross-checks): fast at any size, and it
    // finds the damaged pages a read would stumble on.
    if (!query.exec(QStringLiteral("PRAGMA quick_check(1)")))
        return query.lastError().databaseText();
    if (!query.next())
        return QStringLiteral("no answer");
    const QString answer = query.value(0).toString();
    return answer == QLatin1String("ok") ? QString() : answer;
}

QString Database::Name() const {
    return mConnection->path;
}

QSqlDatabase Database::Connection() const {
    return mConnection->Checked();
}
