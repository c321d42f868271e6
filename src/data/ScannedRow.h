#pragma once

#include <QString>
#include <QStringView>
#include <QVariant>
#include <cstdint>
#include <limits>
#include <vector>

struct sqlite3_stmt;

namespace store {
enum class Kind : unsigned char;
}

// The current row of a statement the store walks (Database::Scan), read straight from the
// engine: nothing is converted or copied until asked for, and only while the row is current.
// The quick reads cover the values a column's declared type carries; Fields gives any value
// as a recordset would, so that odd values (text in a money column, an impossible date) read
// exactly as they do everywhere else.
class ScannedRow {
public:
    static constexpr std::int64_t kNull = std::numeric_limits<std::int64_t>::min();

    // A Money value in ten-thousandths, a Boolean as 0/1, a Date as its Julian day, or kNull
    // for Null; false when the value is none of these (Fields then gives it).
    bool Number(int column, std::int64_t& number) const;
    // A text column's value stored as text, as it is stored, or Null as an empty text; false
    // for anything else.
    bool Text(int column, QStringView& text) const;
    // A Date column's value stored as a valid "yyyy-mm-dd", as those ten characters.
    bool DateText(int column, QLatin1StringView& text) const;
    // What Recordset::Fields gives for this value.
    QVariant Fields(int column) const;

private:
    friend class Database;
    ScannedRow(sqlite3_stmt* statement, std::vector<store::Kind> kinds)
        : mStatement(statement), mKinds(std::move(kinds)) {}

    sqlite3_stmt* mStatement;
    std::vector<store::Kind> mKinds;
};
