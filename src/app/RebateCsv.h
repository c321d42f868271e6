#pragma once

#include "data/RebateTransfer.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantList>

// Records as CSV (RFC 4180): UTF-8, fields separated by commas, records ended by CR LF, a
// field quoted when it holds a comma, a quote or a line break (quotes doubled inside). The
// header names the columns of Rebates. Dates are yyyy-mm-dd, money a plain decimal with at
// least two places ("-3.25"), Booleans True or False. Null is an empty field, an empty text
// an empty quoted field (""), so every value comes back as it was.
namespace RebateCsv {

// A stored value as its field shows it, before quoting; "" for Null.
QString ValueText(const QVariant& value, ColumnType type);

// The file: the header, then one record per row (values as ReadRebateValues gives them).
QByteArray Write(const QList<RebateColumn>& columns, const QList<QVariantList>& rows);

// What an import file holds, read against the columns of the store and the keys in it.
struct Reading {
    QList<QVariantList> rows; // to add, values in the columns' order, as the store holds them
    QList<int> rowLines;      // the line each row starts on
    QStringList problems;     // "Line 7: ..." for each record that can't be read
    QStringList alreadyThere; // "Line 9: RebateID ..." for each key the store holds
};

// Reads the whole file. A header that doesn't name exactly the columns refuses every line;
// a record that can't be read is left out with the reason; a record whose RebateID the store
// (`existing`) already holds is left out, the stored record kept.
Reading Read(const QByteArray& file, const QList<RebateColumn>& columns,
             const QSet<QString>& existing);

} // namespace RebateCsv
