#include "data/ReportQueries.h"

#include "common/core/VbError.h"
#include "data/Database.h"

std::unique_ptr<Recordset> OpenAllRebates() {
    if (!gDatabase)
        throw VbError(VbError::ObjectNotSet);
    return gDatabase->OpenRecordset(QStringLiteral("Select * from Rebates"), dbOpenSnapshot);
}
