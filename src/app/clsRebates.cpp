#include "app/clsRebates.h"

#include "common/core/Desktop.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"

clsRebates::clsRebates() {
    mRS = RebateQueries::OpenUndeletedByDateSent();
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
