#pragma once

#include <QString>

class Recordset;

// The status of the current row of a recordset over Rebates, worked out from its fields and
// today's date (Clock's Date()): "Deleted", "Paid", "Rejected", "Followup", "Overdue",
// "Unsent" or "Pending". Doesn't move the recordset. A missing column raises 3265, a value
// that can't be compared raises 13.
QString GetRebateStatus(const Recordset& rs);
