#include "app/DeletedRecords.h"

#include "app/Backups.h"
#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/AttachmentQueries.h"
#include "data/Database.h"

#include <QSqlError>
#include <QSqlQuery>
#include <vector>

namespace {
const QString kDeletedRows =
    QStringLiteral("SELECT * FROM Rebates WHERE (((Rebates.Deleted)=True))");

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

// Runs the statements for each key, in order, in one transaction; each statement takes the key
// as its one bound value. Returns the rows the last statement changed.
int ChangeRows(const QStringList& rebateIDs, const QStringList& statements) {
    Database& db = TheDatabase();
    int changed = 0;
    db.InTransaction([&] {
        std::vector<QSqlQuery> queries;
        for (const QString& statement : statements) {
            QSqlQuery& query = queries.emplace_back(db.Connection());
            if (!query.prepare(statement))
                throw VbError(dbError::QueryError, query.lastError().text());
        }
        for (const QString& id : rebateIDs) {
            for (QSqlQuery& query : queries) {
                query.bindValue(0, id);
                if (!query.exec())
                    throw VbError(dbError::QueryError, query.lastError().text());
            }
            changed += queries.back().numRowsAffected();
        }
    });
    return changed;
}
} // namespace

QList<DeletedRecord> ReadDeletedRecords() {
    auto rs = TheDatabase().OpenRecordset(kDeletedRows, dbOpenSnapshot);
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
    auto rs = TheDatabase().OpenRecordset(
        QStringLiteral("SELECT RebateID FROM Rebates WHERE (((Rebates.Deleted)=True)) LIMIT 1"),
        dbOpenSnapshot);
    const bool any = !rs->IsEOF();
    rs->Close();
    return any;
}

int RecoverDeletedRecords(const QStringList& rebateIDs) {
    return ChangeRows(rebateIDs, {QStringLiteral("UPDATE Rebates SET Deleted = False WHERE "
                                                 "RebateID = ? AND Deleted = True")});
}

int PurgeDeletedRecords(const QStringList& rebateIDs) {
    if (!rebateIDs.isEmpty())
        Backups::MakeBackup();
    // A purged rebate's attachments go with it, in the same transaction.
    return ChangeRows(
        rebateIDs, {AttachmentQueries::PurgeStatement(),
                    QStringLiteral("DELETE FROM Rebates WHERE RebateID = ? AND Deleted = True")});
}
