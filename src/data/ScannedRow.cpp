#include "data/ScannedRow.h"

#include "data/StoreConnection.h"

#include <sqlite3.h>

bool ScannedRow::Number(int column, std::int64_t& number) const {
    switch (sqlite3_column_type(mStatement, column)) {
    case SQLITE_NULL:
        number = kNull;
        return mKinds[column] != store::Kind::Text;
    case SQLITE_INTEGER:
        if (mKinds[column] == store::Kind::Money) {
            number = sqlite3_column_int64(mStatement, column);
            return true;
        }
        if (mKinds[column] == store::Kind::Boolean) {
            number = sqlite3_column_int64(mStatement, column) != 0 ? 1 : 0;
            return true;
        }
        return false;
    case SQLITE_TEXT: {
        if (mKinds[column] != store::Kind::Date)
            return false;
        const unsigned char* text = sqlite3_column_text(mStatement, column);
        const int length = sqlite3_column_bytes(mStatement, column);
        if (length == 0) {
            number = kNull;
            return true;
        }
        return store::StoredJulianDay(text, length, number);
    }
    default:
        return false;
    }
}

bool ScannedRow::Text(int column, QStringView& text) const {
    if (mKinds[column] != store::Kind::Text)
        return false;
    const int type = sqlite3_column_type(mStatement, column);
    if (type == SQLITE_NULL) {
        text = QStringView();
        return true;
    }
    if (type != SQLITE_TEXT)
        return false;
    const void* characters = sqlite3_column_text16(mStatement, column);
    const int bytes = sqlite3_column_bytes16(mStatement, column);
    text = QStringView(static_cast<const char16_t*>(characters), bytes / 2);
    return true;
}

bool ScannedRow::DateText(int column, QLatin1StringView& text) const {
    if (mKinds[column] != store::Kind::Date ||
        sqlite3_column_type(mStatement, column) != SQLITE_TEXT)
        return false;
    const unsigned char* characters = sqlite3_column_text(mStatement, column);
    const int length = sqlite3_column_bytes(mStatement, column);
    std::int64_t julianDay = 0;
    if (!store::StoredJulianDay(characters, length, julianDay))
        return false;
    text = QLatin1StringView(reinterpret_cast<const char*>(characters), length);
    return true;
}

QVariant ScannedRow::Fields(int column) const {
    // The value as the SQL driver hands it to a recordset, then typed as the recordset does.
    QVariant value;
    switch (sqlite3_column_type(mStatement, column)) {
    case SQLITE_INTEGER:
        value = QVariant(static_cast<qlonglong>(sqlite3_column_int64(mStatement, column)));
        break;
    case SQLITE_FLOAT:
        value = QVariant(sqlite3_column_double(mStatement, column));
        break;
    case SQLITE_TEXT:
        value =
            QVariant(QString(static_cast<const QChar*>(sqlite3_column_text16(mStatement, column)),
                             sqlite3_column_bytes16(mStatement, column) / 2));
        break;
    case SQLITE_BLOB:
        value =
            QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(mStatement, column)),
                                sqlite3_column_bytes(mStatement, column)));
        break;
    default:
        return QVariant();
    }
    return store::TypedFromSql(mKinds[column], value);
}
