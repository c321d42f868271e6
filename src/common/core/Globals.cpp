#include "common/core/Globals.h"

bool gbNewRecord = false;
bool gbRecordSaved = false;
QString gsSavedRebateID;
QString gFindWhat;
QString gsCalendarDate;
QPointer<QObject> gCalendarTarget;
Currency gcCalculatorValue;
QString gTCRLink;
bool gAppStarted = false;

void ResetGlobals() {
    gbNewRecord = false;
    gbRecordSaved = false;
    gsSavedRebateID.clear();
    gFindWhat.clear();
    gsCalendarDate.clear();
    gCalendarTarget.clear();
    gcCalculatorValue = Currency();
    gTCRLink.clear();
    gAppStarted = false;
}
