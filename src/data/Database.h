#pragma once

#include "data/Recordset.h"
#include "data/ScannedRow.h"

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>
#include <memory>

class QSqlDatabase;

namespace store {
struct Connection;
}

// Recordset types, as the program has always numbered them.
enum RecordsetType { dbOpenDynaset = 2, dbOpenSnapshot = 4 };

// The engine's error numbers raised by the store (as VbError numbers).
namespace dbError {
enum : int {
    InvalidArgument = 3001,
    FileNotFound = 3024,
    DiskFull = 3026,
    ReadOnly = 3027,
    NoTransaction = 3034,
    DiskError = 3043,
    NotADatabase = 3049,
    CannotOpen = 3051,
    QueryError = 3075,
    TableNotFound = 3078,
    RecordDeleted = 3167,
    Locked = 3260,
    ObjectClosed = 3420,
};
}

// One open database file: a SQLite connection of its own. The program's statements live in
// RebateQueries, each with its values bound to ? placeholders. Recordsets keep working on their
// rows after the database is closed; anything that needs the file then raises 3420.
class Database {
public:
    // Opens an existing SQLite file for reading and writing; read-only (IsReadOnly) when the
    // file or its folder can't be written. Never creates or alters the file: a missing file
    // raises 3024, a file that is not a SQLite database or is damaged 3049, a file locked by
    // another program 3260, a full disk 3026, any other refusal 3051.
    static std::unique_ptr<Database> Open(const QString& path);

    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Runs the SELECT once and holds its rows. A statement SQLite rejects raises 3075 (3078
    // for a missing table) with SQLite's message in the description. Type is dbOpenDynaset
    // (updatable when the statement is "select * from <one table> ...") or dbOpenSnapshot
    // (read-only). The statement's ? placeholders take `params` in order; a Requery binds
    // them again. Values are never written into the SQL text.
    std::unique_ptr<Recordset> OpenRecordset(const QString& sql, int type = dbOpenDynaset,
                                             const QVariantList& params = {});

    // Runs the SELECT and hands each row to `visit` as the engine reads it, holding none: for
    // walks over many rows that need a few columns. The ? placeholders take `params` in order.
    // Refusals raise as OpenRecordset does.
    void Scan(const QString& sql, const QStringList& params,
              const std::function<void(const ScannedRow&)>& visit);

    // Runs one statement that returns no rows (VACUUM INTO, DELETE ...), its ? placeholders
    // bound to `params`; returns the number of rows it changed. Refusals raise as
    // Recordset::Update does.
    int Execute(const QString& sql, const QVariantList& params = {});

    // How long a write waits for a lock held by another connection before it raises 3260.
    void SetBusyTimeout(int milliseconds);
    int BusyTimeout() const;

    // The writes between BeginTrans and CommitTrans go to the file together: one flush to the
    // disk for many rows instead of one per row. Rollback drops them. Refusals raise as
    // Recordset::Update does; CommitTrans or Rollback without a transaction raises 3034 (after a
    // refused write SQLite may already have ended it).
    void BeginTrans();
    void CommitTrans();
    void Rollback();
    // Runs `writes` in a transaction: commits when it returns, rolls back and raises on when it
    // raises. Statements it prepares must end with it.
    void InTransaction(const std::function<void()>& writes);

    void Close(); // idempotent; later calls on this object raise 3420
    bool IsOpen() const;
    QString Name() const; // the file's path, as given to Open
    bool IsReadOnly() const;
    // "" when every page of the file reads; else the engine's first complaint.
    QString CheckIntegrity();

    // The raw connection, for tooling that needs plain SQL (test helpers, compaction).
    QSqlDatabase Connection() const;

private:
    explicit Database(std::shared_ptr<store::Connection> connection);
    std::shared_ptr<store::Connection> mConnection;
};

// Called over and over while a write waits for a lock another program holds, and once with
// false when the wait is over: the user interface shows that it waits, and why.
void SetStoreWaitHook(std::function<void(bool waiting)> hook);

// The program's open database, set at start-up.
extern std::unique_ptr<Database> gDatabase;

// *gDatabase; raises 91 when there is none.
Database& TheDatabase();
