#include "data/ReportQueries.h"

#include "data/Database.h"

std::unique_ptr<Recordset> OpenAllRebates() {
    return TheDatabase().OpenRecordset(QStringLiteral("Select * from Rebates"), dbOpenSnapshot);
}
