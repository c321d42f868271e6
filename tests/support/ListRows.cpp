#include "ListRows.h"

#include "common/ui/ListView.h"

QStringList ListedIDs(ListView* lv, bool selectedOnly) {
    QStringList ids;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        if (!selectedOnly || lv->ListItems().Item(i)->Selected())
            ids << lv->ListItems().Item(i)->SubItems(3);
    return ids;
}

QStringList SortedIDs(ListView* lv) {
    QStringList ids = ListedIDs(lv);
    ids.sort();
    return ids;
}

void SelectIDs(ListView* lv, const QStringList& ids) {
    ListItemCollection& items = lv->ListItems();
    for (int i = 1; i <= items.Count(); ++i)
        items.Item(i)->SetSelected(false);
    for (const QString& id : ids) {
        for (int i = 1; i <= items.Count(); ++i) {
            if (items.Item(i)->SubItems(3) == id) {
                items.Item(i)->SetSelected(true);
                break;
            }
        }
    }
    lv->ActiveView()->setFocus();
}
