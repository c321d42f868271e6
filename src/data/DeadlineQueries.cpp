#include "data/DeadlineQueries.h"

#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/Recordset.h"

QList<DeadlineRow> ReadDeadlineRows(const QDate& until) {
    if (!gDatabase)
        throw VbError(VbError::ObjectNotSet);
    auto rs = gDatabase->OpenRecordset(
        QStringLiteral("SELECT RebateID, RebateName, ProductName, ExpDate FROM Rebates WHERE "
                       "NOT (Deleted = True) AND DateSent IS NULL AND "
                       "ExpDate <= ? ORDER BY ExpDate, RebateID"),
        dbOpenSnapshot, {until.toString(Qt::ISODate)});
    QList<DeadlineRow> rows;
    rows.reserve(rs->RecordCount());
    for (; !rs->IsEOF(); rs->MoveNext()) {
        const QVariant exp = rs->Fields(3);
        if (exp.metaType().id() != QMetaType::QDate || !exp.toDate().isValid())
            continue;
        rows.append({rs->Fields(0).toString(), rs->Fields(1).toString(), rs->Fields(2).toString(),
                     exp.toDate()});
    }
    rs->Close();
    return rows;
}
