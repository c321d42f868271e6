#pragma once

#include <QStringList>

class ListView;

// The RebateIDs (the hidden fourth column) of a list's rows in the displayed order; only the
// selected ones if asked.
QStringList ListedIDs(ListView* lv, bool selectedOnly = false);

// The same, sorted: for lists whose order the test does not care about.
QStringList SortedIDs(ListView* lv);

// Selects the first row of each key, in that order, and no other row; the list takes the focus.
void SelectIDs(ListView* lv, const QStringList& ids);
