#include "shell/Wiring.h"

#include "common/ui/EntryTools.h"
#include "rebateform/frmRebate.h"
#include "reports/Reports.h"
#include "switchboard/frmSwitchboard.h"
#include "tools/frmAutoDial.h"
#include "tools/frmCalculator.h"
#include "tools/frmCalendar.h"
#include "tools/frmZoomBox.h"

void WireFeatures() {
    frmSwitchboard::RegisterFactory();
    frmRebate::RegisterFactory();

    EntryTools& tools = TheEntryTools();
    tools.ShowCalendar = &frmCalendar::ShowModal;
    tools.ShowCalculator = &frmCalculator::ShowModal;
    tools.ShowWeekConverter = &WeekConverter;
    tools.ShowZoomBox = &DisplayZoomBox;
    tools.ShowDialer = &frmAutoDial::ShowModal;
    Reports::RegisterHooks();
}
