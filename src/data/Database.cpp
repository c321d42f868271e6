#include "data/Database.h"

#include "common/core/modUtilities.h"
#include "data/StoreConnection.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <atomic>

std::unique_ptr<Database> gDatabase;

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
    QString quoted = info.name;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    if (!query.exec(QStringLiteral("PRAGMA table_info(\"%1\")").arg(quoted)))
        throw SqlFailure(query.lastError(), dbError::QueryError);
    while (query.next()) {
        info.columns.append(query.value(1).toString());
        info.kinds.append(KindOfDeclaredType(query.value(2).toString()));
    }
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

VbError SqlFailure(const QSqlError& error, int fallback) {
    const QString engineText = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    // Extended result codes: the primary code is the low byte.
    const int code = error.nativeErrorCode().toInt() & 0xff;
    switch (code) {
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return VbError(dbError::Locked,
                       QStringLiteral("Couldn't update; currently locked (%1).").arg(engineText));
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

std::unique_ptr<Database> Database::Open(const QString& path) {
    if (!FileExists(path))
        throw VbError(dbError::FileNotFound, QStringLiteral("Couldn't find file '%1'.").arg(path));

    auto connection = std::make_shared<store::Connection>();
    connection->connectionName = QStringLiteral("vantry-%1").arg(++gConnectionCounter);
    connection->path = path;
    connection->db =
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection->connectionName);
    // mode=rw: open for writing (or reading, if write-protected) but never create the file.
    connection->db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI"));
    connection->db.setDatabaseName(
        QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded) +
        QStringLiteral("?mode=rw"));

    auto refuse = [&](int number, const QString& description) {
        connection->db.close();
        connection->db = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection->connectionName);
        return VbError(number, description);
    };
    // The engine would take a file of no bytes for a new, empty database; it is a store that
    // lost everything, as unusable as a damaged one.
    if (QFileInfo(path).size() == 0)
        throw refuse(dbError::NotADatabase,
                     QStringLiteral("Can't open database '%1'. The file is empty.").arg(path));
    if (!connection->db.open())
        throw refuse(dbError::CannotOpen, QStringLiteral("Couldn't open file '%1' (%2).")
                                              .arg(path, connection->db.lastError().text()));
    // SQLite reads the header lazily: make it read now so that a foreign file is refused here.
    bool readable = false;
    bool hasSchema = false;
    QString reason;
    {
        QSqlQuery probe(connection->db);
        readable = probe.exec(QStringLiteral("PRAGMA schema_version")) && probe.next();
        hasSchema = readable && probe.value(0).toInt() > 0;
        reason = probe.lastError().databaseText();
    }
    if (!readable)
        throw refuse(dbError::NotADatabase,
                     QStringLiteral("Can't open database '%1'. It may not be a database that "
                                    "this program recognizes, or the file may be corrupt (%2).")
                         .arg(path, reason));
    // A write-ahead log keeps the save of one record to one short sync however large the
    // table grows. It is only set on a database that holds a schema, and
    // where the folder can't hold the log the engine keeps its default journal.
    if (hasSchema)
        QSqlQuery(connection->db).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    return std::unique_ptr<Database>(new Database(std::move(connection)));
}

Database::Database(std::shared_ptr<store::Connection> connection)
    : mConnection(std::move(connection)) {}

Database::~Database() {
    Close();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& sql, int type) {
    if (type != dbOpenDynaset && type != dbOpenSnapshot)
        throw VbError(dbError::InvalidArgument, QStringLiteral("Invalid argument."));
    mConnection->Checked();
    return std::unique_ptr<Recordset>(new Recordset(mConnection, sql, type == dbOpenSnapshot));
}

int Database::Execute(const QString& sql) {
    QSqlQuery query(mConnection->Checked());
    if (!query.exec(sql))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    return query.numRowsAffected();
}

void Database::SetBusyTimeout(int milliseconds) {
    Execute(QStringLiteral("PRAGMA busy_timeout = %1").arg(milliseconds));
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

QString Database::Name() const {
    return mConnection->path;
}

QSqlDatabase Database::Connection() const {
    return mConnection->Checked();
}
