#pragma once

class ListView;

// List routines shared by the Switchboard and the deleted record manager.

// The column-click sort: a first click on a column sorts it ascending, each further click on
// the same column reverses the order. `columnHeader` is the header's 1-based index.
void SortOnColumn(ListView* lv, int columnHeader);
// Fits the columns to the list's width (twips); the hidden RebateID column keeps its 0.
void SizeListColumns(ListView* lv);
// Clears the selection and selects the first visible row.
void SelectFirstItem(ListView* lv);
