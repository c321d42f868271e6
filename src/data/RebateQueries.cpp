#include "data/RebateQueries.h"

#include "data/Recordset.h"

namespace RebateQueries {

namespace {

Database& TheDatabase() {
    if (!gDatabase)
        throw VbError(VbError::ObjectNotSet);
    return *gDatabase;
}

} // namespace

std::unique_ptr<Recordset> OpenNoRebate() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("Select * from Rebates Where RebateID = 'Match None'"), dbOpenDynaset);
}

std::unique_ptr<Recordset> OpenRebateByID(const QString& rebateID, int type) {
    return TheDatabase().OpenRecordset(QStringLiteral("Select * from Rebates Where RebateID = ?"),
                                       type, {rebateID});
}

std::unique_ptr<Recordset> OpenListRows() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("SELECT * FROM Rebates WHERE NOT (((Rebates.Deleted)=True))"));
}

std::unique_ptr<Recordset> OpenListRow(const QString& rebateID) {
    return TheDatabase().OpenRecordset(
        QStringLiteral("SELECT * FROM Rebates WHERE (([RebateID])= ?);"), dbOpenDynaset,
        {rebateID});
}

std::unique_ptr<Recordset> OpenStatisticsRows() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("SELECT * FROM Rebates WHERE (((Rebates.Deleted)=False))"), dbOpenSnapshot);
}

std::unique_ptr<Recordset> OpenUndeletedByDateSent() {
    return TheDatabase().OpenRecordset(
        QStringLiteral("Select * from Rebates WHERE NOT (([Deleted])=True Order by DateSent"));
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
