#include "maintenance/Maintenance.h"

#include "maintenance/frmAbout.h"
#include "maintenance/frmOptions.h"
#include "maintenance/frmRestore.h"
#include "maintenance/frmTip.h"
#include "maintenance/modMultimedia.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>

int Maintenance::RunModal(QDialog& dialog) {
    QWidget* parent = dialog.parentWidget();
    QPointer<QWidget> focus = QApplication::focusWidget();
    QPointer<QWidget> owner = parent ? parent->window() : focus ? focus->window() : nullptr;
    if (focus && focus->window() != owner)
        focus = nullptr;
    const int result = dialog.exec();
    if (owner && owner->isVisible()) {
        owner->activateWindow();
        if (focus && focus->isVisible())
            focus->setFocus(Qt::ActiveWindowFocusReason);
    }
    return result;
}

void Maintenance::ShowOptions(QWidget* owner) {
    frmOptions dialog(owner);
    RunModal(dialog);
}

void Maintenance::ShowAbout(QWidget* owner) {
    frmAbout dialog(owner);
    RunModal(dialog);
}

void Maintenance::ShowRestore(QWidget* owner) {
    frmRestore dialog(owner);
    RunModal(dialog);
}

void Maintenance::ShowTipOfTheDay(QWidget* owner) {
    frmTip dialog(owner);
    if (dialog.Form_Load())
        RunModal(dialog);
}

void Maintenance::PlayThemeSong() {
    ::PlayThemeSong();
}
