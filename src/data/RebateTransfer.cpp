#include "data/RebateTransfer.h"

#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/StoreConnection.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

// A fixed statement, read forward once.
QSqlQuery Run(const QString& sql) {
    QSqlQuery query(TheDatabase().Connection());
    query.setForwardOnly(true);
    if (!query.exec(sql))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    return query;
}

ColumnType TypeOf(const QString& declared) {
    switch (store::KindOfDeclaredType(declared)) {
    case store::Kind::Money:
        return ColumnType::Money;
    case store::Kind::Date:
        return ColumnType::Date;
    case store::Kind::Boolean:
        return ColumnType::Boolean;
    default:
        return ColumnType::Text;
    }
}

} // namespace

QList<RebateColumn> RebateColumns() {
    QSqlQuery query = Run(QStringLiteral("SELECT name, type FROM pragma_table_info('Rebates')"));
    QList<RebateColumn> columns;
    while (query.next())
        columns.append({query.value(0).toString(), TypeOf(query.value(1).toString())});
    return columns;
}

QList<QVariantList> ReadRebateValues(const QStringList& rebateIDs) {
    QHash<QString, qsizetype> position;
    position.reserve(rebateIDs.size());
    for (qsizetype i = 0; i < rebateIDs.size(); ++i)
        position.insert(rebateIDs[i], i);
    QList<QVariantList> slots(rebateIDs.size());
    QSqlQuery query = Run(QStringLiteral("SELECT * FROM Rebates"));
    const int columns = query.record().count();
    const int keyColumn = query.record().indexOf(QStringLiteral("RebateID"));
    while (query.next()) {
        const auto found = position.constFind(query.value(keyColumn).toString());
        if (found == position.cend() || !slots[*found].isEmpty())
            continue;
        QVariantList values;
        values.reserve(columns);
        for (int c = 0; c < columns; ++c)
            values.append(query.value(c));
        slots[*found] = std::move(values);
    }
    slots.removeIf([](const QVariantList& values) { return values.isEmpty(); });
    return slots;
}

QSet<QString> ReadRebateIDs() {
    QSqlQuery query = Run(QStringLiteral("SELECT RebateID FROM Rebates"));
    QSet<QString> ids;
    while (query.next())
        ids.insert(query.value(0).toString());
    return ids;
}

void InsertRebateValues(const QList<QVariantList>& rows) {
    if (rows.isEmpty())
        return;
    Database& db = TheDatabase();
    const QStringList placeholders(rows.first().size(), QStringLiteral("?"));
    db.InTransaction([&] {
        QSqlQuery query(db.Connection());
        if (!query.prepare(
                QStringLiteral("INSERT INTO Rebates VALUES (%1)").arg(placeholders.join(u','))))
            throw store::SqlFailure(query.lastError(), dbError::QueryError);
        for (const QVariantList& row : rows) {
            for (int c = 0; c < row.size(); ++c)
                query.bindValue(c, row[c]);
            if (!store::ExecWaiting(query, db.BusyTimeout()))
                throw store::SqlFailure(query.lastError(), dbError::QueryError);
        }
    });
}
