#include "app/clsRebates.h"

#include "common/core/Desktop.h"
#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/Recordset.h"

clsRebates::clsRebates() {
    if (!gDatabase)
        throw VbError(VbError::ObjectNotSet);
    mRS = gDatabase->OpenRecordset(QStringLiteral("Select * from Rebates ") +
                                   QStringLiteral("WHERE NOT (([Deleted])=True Order by DateSent"));
}

clsRebates::~clsRebates() {
    if (mRS)
        mRS->Close();
}

void clsRebates::MoveFirst() {
    mRS->MoveFirst();
}

void clsRebates::MoveLast() {
    mRS->MoveLast();
}

void clsRebates::MoveNext() {
    if (!mRS->IsEOF())
        mRS->MoveNext();
    if (mRS->RecordCount() > 0 && mRS->IsEOF())
        mRS->MoveLast();
}

void clsRebates::MovePrevious() {
    if (!mRS->IsBOF())
        mRS->MovePrevious();
    if (mRS->RecordCount() > 0 && mRS->IsBOF()) {
        Beep();
        mRS->MoveFirst();
    }
}

void clsRebates::Requery() {
    mRS->Requery();
}
