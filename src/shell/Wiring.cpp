#include "shell/Wiring.h"

#include "common/ui/EntryTools.h"
#include "common/ui/Forms.h"
#include "data/Database.h"
#include "rebateform/frmRebate.h"
#include "reports/Reports.h"
#include "switchboard/frmSwitchboard.h"
#include "tools/frmAutoDial.h"
#include "tools/frmCalculator.h"
#include "tools/frmCalendar.h"
#include "tools/frmZoomBox.h"

#include <QCoreApplication>
#include <optional>

namespace {
// While a write waits for another program's lock the window says so and keeps painting;
// the user's input waits with the write.
void ShowStoreWait(bool waiting) {
    static std::optional<BusyState> busy;
    if (!waiting) {
        busy.reset();
        return;
    }
    if (!busy)
        busy.emplace(QStringLiteral("Waiting: the database file is locked by another program..."));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
} // namespace

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
    SetStoreWaitHook(ShowStoreWait);
}
