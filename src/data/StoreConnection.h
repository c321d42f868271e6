#pragma once

// Internals shared by Database and Recordset; not for the rest of the program.

#include "common/core/VbError.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>
#include <cstdint>

class QSqlError;
class QSqlQuery;

namespace store {

// How a column is stored and what Fields() gives for it, from the declared type.
enum class Kind : unsigned char {
    Text,    // TEXT         <-> QString
    Money,   // CURRENCY     <-> Currency (INTEGER ten-thousandths)
    Date,    // DATE         <-> QDate (TEXT yyyy-mm-dd)
    Boolean, // BOOLEAN      <-> bool (INTEGER 0/1)
    Other,   // anything else: the value as SQLite gives it
};

struct TableInfo {
    QString name;
    QStringList columns;
    QList<Kind> kinds;
    QString key; // the column of a one-column primary key, else empty
};

// The state behind one Database, shared with its recordsets so that a recordset outlives a
// closed database safely.
struct Connection {
    QString connectionName;
    QString path;
    QSqlDatabase db;                  // invalid once closed
    QHash<QString, TableInfo> tables; // by lower-case name; filled on first use
    int lockWaitMs = 6000;            // how long a write waits for another program's lock
    bool readOnly = false;            // opened without write access (an unwritable folder)

    bool IsOpen() const { return db.isValid() && db.isOpen(); }
    // Raises 3420 when the database has been closed.
    QSqlDatabase& Checked();
    // The table's columns, or nullptr when there is no such table.
    const TableInfo* Table(const QString& name);
};

// Runs a prepared write. While another program holds the file locked it tries again for a
// few seconds, calling the wait hook between tries; then the engine's refusal stands.
bool ExecWaiting(QSqlQuery& query, int waitMs);

// The VbError for a failed statement. `fallback` is the number used for a plain SQL error.
VbError SqlFailure(const QSqlError& error, int fallback);

Kind KindOfDeclaredType(const QString& declaredType);

// What Recordset::Fields gives for a value as the SQL driver reads it: converted when the
// declared type allows, else the value as it is.
QVariant TypedFromSql(Kind kind, const QVariant& value);

// A stored date, "yyyy-mm-dd" of a valid day, to its Julian day without going through the
// general date parser; false for anything else. Works on Latin-1 bytes and UTF-16 units alike.
template <typename Char>
bool StoredJulianDay(const Char* text, qsizetype length, std::int64_t& julianDay) {
    if (length != 10 || text[4] != '-' || text[7] != '-')
        return false;
    int parts[3] = {0, 0, 0};
    const int starts[3] = {0, 5, 8};
    const int lengths[3] = {4, 2, 2};
    for (int p = 0; p < 3; ++p) {
        for (int i = starts[p]; i < starts[p] + lengths[p]; ++i) {
            if (text[i] < '0' || text[i] > '9')
                return false;
            parts[p] = parts[p] * 10 + (text[i] - '0');
        }
    }
    const QDate date(parts[0], parts[1], parts[2]);
    if (!date.isValid())
        return false;
    julianDay = date.toJulianDay();
    return true;
}

} // namespace store
