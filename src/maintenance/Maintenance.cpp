#include "maintenance/Maintenance.h"

#include "maintenance/frmAbout.h"
#include "maintenance/frmOptions.h"
#include "maintenance/frmTip.h"
#include "maintenance/modMultimedia.h"

void Maintenance::ShowOptions(QWidget* owner) {
    frmOptions dialog(owner);
    dialog.exec();
}

void Maintenance::ShowAbout(QWidget* owner) {
    frmAbout dialog(owner);
    dialog.exec();
}

void Maintenance::ShowTipOfTheDay(QWidget* owner) {
    frmTip dialog(owner);
    if (dialog.Form_Load())
        dialog.exec();
}

void Maintenance::PlayThemeSong() {
    ::PlayThemeSong();
}
