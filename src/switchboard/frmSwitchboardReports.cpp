// The Switchboard's report commands: they gather what the reports need (the selected rows'
// keys, the statistics page's texts) and hand it to the reports through their hooks.
#include "common/ui/ListView.h"
#include "common/ui/ReportHooks.h"
#include "common/ui/TabStrip.h"
#include "switchboard/StatisticsPage.h"
#include "switchboard/frmSwitchboard.h"

#include <QLabel>

namespace {
StatisticsSheet SheetOf(const StatisticsPage& page) {
    StatisticsSheet sheet;
    for (size_t i = 0; i < sheet.headers.size(); ++i)
        sheet.headers[i] = page.lblStatHeaders(static_cast<int>(i))->text();
    for (size_t i = 0; i < sheet.captions.size(); ++i)
        sheet.captions[i] = page.lblStats(static_cast<int>(i))->text();
    for (size_t i = 0; i < sheet.figures.size(); ++i)
        sheet.figures[i] = page.lblStatFigures(static_cast<int>(i))->text();
    return sheet;
}
} // namespace

void frmSwitchboard::mnuPrintSelected_Click() {
    const QStringList ids = ListedRebateIDs(true);
    if (!ids.isEmpty() && ReportHooks::Instance().PrintRecords)
        ReportHooks::Instance().PrintRecords(ids);
}

void frmSwitchboard::mnuPrintPreview_Click() {
    const QStringList ids = ListedRebateIDs(true);
    if (!ids.isEmpty() && ReportHooks::Instance().ViewRecords)
        ReportHooks::Instance().ViewRecords(ids);
}

void frmSwitchboard::mnuPrintStats_Click() {
    // The page's captions are current only while it shows.
    const Tab* tab = tbsSwitch->SelectedItem();
    if (!tab || tab->Caption() != QLatin1String("Statistics"))
        UpdateStatistics();
    if (ReportHooks::Instance().PrintStatistics)
        ReportHooks::Instance().PrintStatistics(SheetOf(*Statistics()));
}

void frmSwitchboard::mnuPrintPrevewStats_Click() {
    UpdateStatistics();
    if (ReportHooks::Instance().ViewStatistics)
        ReportHooks::Instance().ViewStatistics(SheetOf(*Statistics()));
}

QStringList frmSwitchboard::ListedRebateIDs(bool selectedOnly) const {
    ListView* lv = GetCurrentLV();
    if (!lv || lv == lvNew)
        return {};
    QStringList ids;
    for (int i = 1; i <= lv->ListItems().Count(); ++i) {
        const ListItem* item = lv->ListItems().Item(i);
        if (!selectedOnly || item->Selected())
            ids.append(item->SubItems(3));
    }
    return ids;
}
