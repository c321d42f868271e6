#include "shell/Wiring.h"

#include "rebateform/frmRebate.h"
#include "reports/Reports.h"
#include "switchboard/frmSwitchboard.h"

void WireFeatures() {
    frmSwitchboard::RegisterFactory();
    frmRebate::RegisterFactory();
    Reports::RegisterHooks();
}
