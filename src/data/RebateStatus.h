#pragma once

#include <QDate>
#include <QString>

class Recordset;
class ScannedRow;

// The status of the current row of a recordset over Rebates, worked out from its fields and
// today's date: "Deleted", "Paid", "Rejected", "Followup", "Overdue", "Unsent" or "Pending".
// Doesn't move the recordset. A missing column raises 3265, a value that can't be compared
// raises 13. A walk over many rows reads the clock once and hands in `today`.
QString GetRebateStatus(const Recordset& rs, const QDate& today);
// The same for one row, with today from the clock (Date()).
QString GetRebateStatus(const Recordset& rs);
// The same for a row of RebateQueries::ForEachListRow.
QString GetRebateStatus(const ScannedRow& row, const QDate& today);
