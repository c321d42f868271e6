#include "app/DeletedRecords.h"

#include "app/Backups.h"
#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"

namespace {
// The manager's own icon rule, which differs from the lists' status rules.
QString IconKeyOf(const Recordset& rs, const QDate& today) {
    if (CDbl(NZ(rs.Fields(QStringLiteral("AmountReceived")), 0)) > 0)
        return QStringLiteral("Paid");
    if (NZ(rs.Fields(QStringLiteral("Rejected")), false).toBool())
        return QStringLiteral("Rejected");
    if (!CStr(NZ(rs.Fields(QStringLiteral("FollowupDate")))).isEmpty())
        return QStringLiteral("Followup");
    const QVariant due = rs.Fields(QStringLiteral("DateDue"));
    if (CStr(NZ(rs.Fields(QStringLiteral("DateReceived")))).isEmpty() && !due.isNull() &&
        CDate(due) < today)
        return QStringLiteral("Overdue");
    if (CStr(NZ(rs.Fields(QStringLiteral("DateSent")))).isEmpty())
        return QStringLiteral("Unsent");
    return QStringLiteral("Pending");
}
} // namespace

QList<DeletedRecord> ReadDeletedRecords() {
    auto rs = RebateQueries::OpenDeletedRebates();
    const QDate today = Date();
    QList<DeletedRecord> rows;
    rows.reserve(rs->RecordCount());
    for (; !rs->IsEOF(); rs->MoveNext()) {
        rows.append({CStr(NZ(rs->Fields(QStringLiteral("RebateName")))),
                     CStr(NZ(rs->Fields(QStringLiteral("ProductName")))),
                     CStr(NZ(rs->Fields(QStringLiteral("DateSent")))),
                     CStr(NZ(rs->Fields(QStringLiteral("RebateID")))), IconKeyOf(*rs, today)});
    }
    rs->Close();
    return rows;
}

bool AnyDeletedRecords() {
    return RebateQueries::AnyRebateDeleted();
}

int RecoverDeletedRecords(const QStringList& rebateIDs) {
    return RebateQueries::RecoverDeletedRebates(rebateIDs);
}

int PurgeDeletedRecords(const QStringList& rebateIDs) {
    if (!rebateIDs.isEmpty())
        Backups::MakeBackup();
    return RebateQueries::PurgeDeletedRebates(rebateIDs);
}
