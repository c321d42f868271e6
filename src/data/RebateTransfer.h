#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantList>

// The rows of Rebates as the store holds them, for moving records in and out of the program
// whole (CSV export and import). Values are SQLite's own: money INTEGER ten-thousandths, dates
// TEXT yyyy-mm-dd, Booleans INTEGER 0/1, NULL as a null QVariant; a value its column can't hold
// comes as stored. Every function works on gDatabase and raises 91 when none is open.
enum class ColumnType { Text, Money, Date, Boolean };

struct RebateColumn {
    QString name;
    ColumnType type;
};

// The columns of Rebates in the table's order (a type the program doesn't know counts as
// text).
QList<RebateColumn> RebateColumns();

// The values of the rows with these keys, in the order of the keys, each in the columns'
// order. Keys without a row are passed over. One walk of the table.
QList<QVariantList> ReadRebateValues(const QStringList& rebateIDs);

// Every RebateID in the table.
QSet<QString> ReadRebateIDs();

// Adds the rows (values in the columns' order) in one transaction: all or none. Raises the
// store's refusal after rolling back.
void InsertRebateValues(const QList<QVariantList>& rows);
