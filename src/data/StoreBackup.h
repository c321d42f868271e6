#pragma once

#include <QString>
#include <functional>

class Database;

// Whole-file copies of a store through SQLite's online backup: page by page from a connection
// of its own, so the copy is one consistent state of the file even while the program's
// connection holds it open with its write-ahead log. Never a copy of the file's bytes.
namespace StoreBackup {

// Copies the store at `from` into `to`, creating `to` when it is missing. The pages go into
// `to` in one write transaction: a copy that fails on the way (a full disk, a fault) leaves
// `to` as it was, and a file it had created is removed. A new file keeps no write-ahead log:
// it is one file that any SQLite reader opens. `betweenSteps` runs after each step of
// some hundred pages and may throw to abandon the copy. Raises 3024 for a missing source,
// 3026 for a full disk, 3027 when `to` or its folder can't be written, 3260 when another
// program keeps either file locked for two seconds, else 3043.
void Copy(const QString& from, const QString& to,
          const std::function<void()>& betweenSteps = nullptr);

// Writes a compacted copy of `db`'s file into `to`, which must not exist (VACUUM INTO).
// Raises 3026 with the engine's words when the copy can't be written.
void CompactInto(Database& db, const QString& to);
// The rows of Rebates in the store, read on a read-only connection of its own; -1 when the
// file is no store of rebates or can't be read.
qint64 CountRebates(const QString& path);

// "" when every page of the file reads and it holds the table Rebates; else what is wrong.
QString CheckStore(const QString& path);

} // namespace StoreBackup
