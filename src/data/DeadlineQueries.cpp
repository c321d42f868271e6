#include "data/DeadlineQueries.h"

#include "data/Database.h"
#include "data/Recordset.h"

QList<DeadlineRow> ReadDeadlineRows(const QDate& from, const QDate& until) {
    auto rs = TheDatabase().OpenRecordset(
        QStringLiteral("SELECT RebateID, RebateName, ProductName, ExpDate FROM Rebates WHERE "
                       "NOT (Deleted = True) AND DateSent IS NULL AND "
                       "ExpDate >= ? AND ExpDate <= ? ORDER BY ExpDate, RebateID"),
        dbOpenSnapshot, {from.toString(Qt::ISODate), until.toString(Qt::ISODate)});
    QList<DeadlineRow> rows;
    rows.reserve(rs->RecordCount());
    for (; !rs->IsEOF(); rs->MoveNext()) {
        // The columns of a chosen list come as stored: the date as its yyyy-mm-dd text.
        const QDate exp = QDate::fromString(rs->Fields(3).toString(), Qt::ISODate);
        if (!exp.isValid())
            continue;
        rows.append(
            {rs->Fields(0).toString(), rs->Fields(1).toString(), rs->Fields(2).toString(), exp});
    }
    rs->Close();
    return rows;
}
