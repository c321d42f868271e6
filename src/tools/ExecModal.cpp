#include "tools/ExecModal.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>

int ExecModal(QDialog& dialog) {
    const QPointer<QWidget> focus = QApplication::focusWidget();
    const int result = dialog.exec();
    if (focus && focus->isVisible()) {
        focus->activateWindow();
        focus->setFocus(Qt::ActiveWindowFocusReason);
    }
    return result;
}
