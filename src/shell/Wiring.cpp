#include "shell/Wiring.h"

#include "rebateform/frmRebate.h"
#include "switchboard/frmSwitchboard.h"

void WireFeatures() {
    frmSwitchboard::RegisterFactory();
    frmRebate::RegisterFactory();
}
