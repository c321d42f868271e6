#include "data/RebateQueries.h"

#include "data/AttachmentQueries.h"
#include "data/Recordset.h"
#include "data/StoreConnection.h"

#include <QSqlError>
#include <QSqlQuery>
#include <vector>

namespace {
const QString kDeletedWhere = QStringLiteral(" FROM Rebates WHERE (((Rebates.Deleted)=True))");

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
                throw store::SqlFailure(query.lastError(), dbError::QueryError);
        }
        for (const QString& id : rebateIDs) {
            for (QSqlQuery& query : queries) {
                query.bindValue(0, id);
                if (!store::ExecWaiting(query, db.BusyTimeout()))
                    throw store::SqlFailure(query.lastError(), dbError::QueryError);
            }
            changed += queries.back().numRowsAffected();
        }
    });
    return changed;
}
} // namespace

namespace RebateQueries {

std::unique_ptr<Recordset> OpenNoRebate() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("Select * from Rebates Where RebateID = 'Match None'"), dbOpenDynaset);
}

std::unique_ptr<Recordset> OpenRebateByID(const QString& rebateID, int type) {
    return TheDatabase().OpenRecordset(QStringLiteral("Select * from Rebates Where RebateID = ?"),
                                       type, {rebateID});
}

namespace {
const QString kListColumnNames =
    QStringLiteral("RebateID, RebateName, ProductName, DateSent, DateDue, DateReceived, "
                   "FollowupDate, AmountReceived, Rejected, Deleted");
const QString kListColumns =
    QStringLiteral("SELECT ") + kListColumnNames + QStringLiteral(" FROM Rebates ");
} // namespace

void ForEachListRow(const std::function<void(const ScannedRow&)>& visit) {
    TheDatabase().Scan(kListColumns + QStringLiteral("WHERE NOT (((Rebates.Deleted)=True))"), {},
                       visit);
}

void ForEachListRowOf(const QString& rebateID,
                      const std::function<void(const ScannedRow&)>& visit) {
    TheDatabase().Scan(kListColumns + QStringLiteral("WHERE (([RebateID])= ?)"), {rebateID}, visit);
}

void ForEachStatisticsRow(const std::function<void(const ScannedRow&)>& visit) {
    TheDatabase().Scan(
        QStringLiteral("SELECT PurchasePrice, CouponAmount, PostagePrice, FollowupPostage, "
                       "AmountReceived, Rejected, RebateAmount FROM Rebates "
                       "WHERE (((Rebates.Deleted)=False))"),
        {}, visit);
}

void ForEachSavingsRow(const std::function<void(const ScannedRow&)>& visit) {
    TheDatabase().Scan(QStringLiteral("SELECT ") + kListColumnNames +
                           QStringLiteral(", RebateAmount FROM Rebates "
                                          "WHERE (((Rebates.Deleted)=False))"),
                       {}, visit);
}

std::unique_ptr<Recordset> OpenUndeletedByDateSent() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("Select * from Rebates WHERE NOT (([Deleted])=True Order by DateSent"));
}

std::unique_ptr<Recordset> OpenDeletedRebates() {
    return TheDatabase().OpenRecordset(QStringLiteral("SELECT *") + kDeletedWhere, dbOpenSnapshot);
}

bool AnyRebateDeleted() {
    return !TheDatabase()
                .OpenRecordset(QStringLiteral("SELECT RebateID") + kDeletedWhere +
                                   QStringLiteral(" LIMIT 1"),
                               dbOpenSnapshot)
                ->IsEOF();
}

int RecoverDeletedRebates(const QStringList& rebateIDs) {
    return ChangeRows(rebateIDs, {QStringLiteral("UPDATE Rebates SET Deleted = False WHERE "
                                                 "RebateID = ? AND Deleted = True")});
}

int PurgeDeletedRebates(const QStringList& rebateIDs) {
    return ChangeRows(
        rebateIDs, {AttachmentQueries::PurgeStatement(),
                    QStringLiteral("DELETE FROM Rebates WHERE RebateID = ? AND Deleted = True")});
}

qint64 CountRebates(Database& db) {
    return db.OpenRecordset(QStringLiteral("SELECT Count(*) FROM Rebates"), dbOpenSnapshot)
        ->Fields(0)
        .toLongLong();
}

bool RebateIDTaken(const QString& rebateID) {
    return !OpenRebateByID(rebateID, dbOpenSnapshot)->IsEOF();
}

void MarkRebateDeleted(const QString& rebateID) {
    auto rs = OpenRebateByID(rebateID);
    RequireOneRebate(*rs, rebateID);
    rs->MoveFirst();
    rs->Edit();
    rs->SetField(QStringLiteral("Deleted"), true);
    rs->Update();
    rs->Close();
}

void RequireOneRebate(const Recordset& rs, const QString& rebateID) {
    if (rs.RecordCount() == 0)
        throw RebateNotFound(rebateID);
    if (rs.RecordCount() > 1)
        throw RebateKeyNotUnique(rebateID);
}

VbError RebateNotFound(const QString& rebateID) {
    return VbError(VbError::NoCurrentRecord,
                   QStringLiteral("The rebate record \"%1\" is no longer in the database: it "
                                  "may have been purged or changed by another program. Nothing "
                                  "was changed. Press F5 on the Switchboard to refresh its lists.")
                       .arg(rebateID));
}

VbError RebateKeyNotUnique(const QString& rebateID) {
    return VbError(VbError::DuplicateKey,
                   QStringLiteral("More than one rebate record has the RebateID \"%1\". Nothing "
                                  "was changed, so that no other record is touched.")
                       .arg(rebateID));
}

} // namespace RebateQueries
