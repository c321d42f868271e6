#pragma once

#include "common/core/VbError.h"
#include "data/Database.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class Recordset;

// Every statement the program runs on Rebates, by name, through gDatabase. Values are bound,
// never written into the SQL text, so a key holding a quote finds its own row and no other.
// Each raises 91 when no database is open, and what the store raises otherwise.
namespace RebateQueries {

// An empty updatable set of Rebates: the recordset of a record not yet saved.
std::unique_ptr<Recordset> OpenNoRebate();

// The row with this RebateID (updatable as a dynaset).
std::unique_ptr<Recordset> OpenRebateByID(const QString& rebateID, int type = dbOpenDynaset);

// The columns ForEachListRow and ForEachListRowOf read, by position.
namespace ListColumn {
enum : int {
    RebateID,
    RebateName,
    ProductName,
    DateSent,
    DateDue,
    DateReceived,
    FollowupDate,
    AmountReceived,
    Rejected,
    Deleted,
};
}

// The rows the Switchboard's lists show: every row not marked deleted (Null counts as marked,
// as the query has always read), with the columns the lists and the status rule read.
void ForEachListRow(const std::function<void(const ScannedRow&)>& visit);

// The same columns of the row with this RebateID, whatever its Deleted.
void ForEachListRowOf(const QString& rebateID, const std::function<void(const ScannedRow&)>& visit);

// The columns ForEachStatisticsRow reads, by position.
namespace StatisticsColumn {
enum : int {
    PurchasePrice,
    CouponAmount,
    PostagePrice,
    FollowupPostage,
    AmountReceived,
    Rejected,
    RebateAmount,
};
}

// The rows the statistics count (those whose Deleted is False), with the columns they sum.
void ForEachStatisticsRow(const std::function<void(const ScannedRow&)>& visit);

// The columns ForEachSavingsRow reads: those of ListColumn (so the status rule reads them),
// then the rebate's amount.
namespace SavingsColumn {
enum : int { RebateAmount = ListColumn::Deleted + 1 };
}

// The rows the statistics count, for the savings chart.
void ForEachSavingsRow(const std::function<void(const ScannedRow&)>& visit);

// The undeleted rows by DateSent, for the record walker. Its text has always been refused by
// the engine (an unbalanced parenthesis): opening it raises 3075.
std::unique_ptr<Recordset> OpenUndeletedByDateSent();

// The rows marked deleted, every column, for the deleted record manager.
std::unique_ptr<Recordset> OpenDeletedRebates();
// Whether any row is marked deleted.
bool AnyRebateDeleted();
// Clears Deleted on the deleted rows with these keys, or removes them from the table with their
// attachments, all in one transaction (one look-up by key per row), each write waiting out
// another program's lock as long as the store's other writes do. A key without a deleted row
// is passed over. Returns the number of rows changed; raises the store's error after rolling
// back.
int RecoverDeletedRebates(const QStringList& rebateIDs);
int PurgeDeletedRebates(const QStringList& rebateIDs);
// The number of rows in the Rebates table of `db`.
qint64 CountRebates(Database& db);
// Whether a row has this RebateID.
bool RebateIDTaken(const QString& rebateID);

// Marks the one row with this RebateID as deleted. When no row or more than one has the key,
// changes nothing and raises RebateNotFound or RebateKeyNotUnique.
void MarkRebateDeleted(const QString& rebateID);

// Raises unless `rs`, opened on this RebateID, holds exactly one row.
void RequireOneRebate(const Recordset& rs, const QString& rebateID);

// The errors of a key that doesn't name exactly one record, in words a user can act on.
VbError RebateNotFound(const QString& rebateID);     // 3021
VbError RebateKeyNotUnique(const QString& rebateID); // 3022

} // namespace RebateQueries
