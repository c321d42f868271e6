#pragma once

class QWidget;

// The one-step undo of the rebate form's fields. Any other control has nothing to undo.
bool CanUndo(QWidget* control);
void UndoEdit(QWidget* control);
