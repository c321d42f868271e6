#include "common/ui/modListUtilities.h"

#include "common/ui/ListView.h"

#include <QtGlobal>

namespace {
// Room left for the list's frame and its vertical scroll bar.
constexpr int kScrollRoom = 350;

void SetColumnWidth(ListView* lv, int column, int twips) {
    if (column > lv->ColumnHeaders().Count())
        return;
    ColumnHeader* header = lv->ColumnHeaders().Item(column);
    if (header->WidthTwips() != twips)
        header->SetWidthTwips(twips);
}
} // namespace

void SortOnColumn(ListView* lv, int columnHeader) {
    if (!lv)
        return;
    const int column = columnHeader - 1;
    if (lv->SortKey() == column) {
        lv->SetSortOrder(lv->SortOrder() == 0 ? 1 : 0);
    } else {
        lv->SetSortKey(column);
        lv->SetSortOrder(0);
    }
    lv->SetSorted(true);
    if (ListItem* item = lv->SelectedItem())
        item->EnsureVisible();
}

void SizeListColumns(ListView* lv) {
    if (!lv)
        return;
    lv->SetVisible(false);
    const int width = lv->WidthTwips();
    const int first = qRound(width * 0.5);
    SetColumnWidth(lv, 1, first);
    if (lv->Name() == QLatin1String("lvNew")) {
        SetColumnWidth(lv, 2, width - (first + kScrollRoom));
    } else {
        const int second = qRound(width * 0.3);
        SetColumnWidth(lv, 2, second);
        SetColumnWidth(lv, 3, width - (first + second + kScrollRoom));
    }
    lv->SetVisible(true);
}

void SelectFirstItem(ListView* lv) {
    if (!lv)
        return;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        lv->ListItems().Item(i)->SetSelected(false);
    lv->SetSelectedItem(lv->GetFirstVisible());
}
