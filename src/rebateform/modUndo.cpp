#include "rebateform/modUndo.h"

#include "rebateform/FieldEdit.h"

bool CanUndo(QWidget* control) {
    auto* field = qobject_cast<FieldEdit*>(control);
    return field && field->CanUndo();
}

void UndoEdit(QWidget* control) {
    if (auto* field = qobject_cast<FieldEdit*>(control))
        field->Undo();
}
