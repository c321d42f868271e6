#pragma once

#include <QString>

class FieldEdit;
class frmRebate;

// Drives the rebate form the way a user does. The test's Fixture must have opened the
// database (Fixture::OpenDatabase).
namespace RebateFormDriver {
// Opens the form for a new record, or for the stored row with this RebateID as if it were
// the selected row of the Switchboard's current list; the form's window is shown and active.
frmRebate* OpenNew();
frmRebate* OpenExisting(const QString& rebateID);

// Brings the field's page forward and moves into the field with the Tab key, which selects
// its text.
FieldEdit* Enter(frmRebate* form, int index);
// Enter, then type the keys one by one.
FieldEdit* Type(frmRebate* form, int index, const QString& keys);
// Presses Tab in the field that has the focus.
void PressTab();

// The caption of the page on top.
QString CurrentTab(frmRebate* form);
} // namespace RebateFormDriver
