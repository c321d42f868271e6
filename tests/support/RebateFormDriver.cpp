#include "RebateFormDriver.h"

#include "app/clsRebate.h"
#include "common/core/Globals.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/frmRebate.h"

#include <QApplication>
#include <QTabWidget>
#include <QTest>

namespace {
frmRebate* Open() {
    frmRebate* form = frmRebate::LoadAndShow();
    QWidget* window = form->window();
    QApplication::setActiveWindow(window);
    if (!QTest::qWaitForWindowActive(window))
        qWarning("the rebate form's window didn't become active");
    return form;
}
} // namespace

frmRebate* RebateFormDriver::OpenNew() {
    gbNewRecord = true;
    return Open();
}

frmRebate* RebateFormDriver::OpenExisting(const QString& rebateID) {
    clsRebate::SetSelectedRebateIDSource([rebateID] { return rebateID; });
    gbNewRecord = false;
    return Open();
}

FieldEdit* RebateFormDriver::Enter(frmRebate* form, int index) {
    FieldEdit* field = form->txtFields(index);
    auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tbsTabs"));
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->widget(i)->isAncestorOf(field))
            tabs->setCurrentIndex(i);
    }
    field->setFocus(Qt::TabFocusReason);
    if (!QTest::qWaitFor([field] { return field->hasFocus(); }))
        qWarning("%s didn't take the focus", qPrintable(field->objectName()));
    return field;
}

FieldEdit* RebateFormDriver::Type(frmRebate* form, int index, const QString& keys) {
    FieldEdit* field = Enter(form, index);
    QTest::keyClicks(field, keys);
    return field;
}

void RebateFormDriver::PressTab() {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
}

QString RebateFormDriver::CurrentTab(frmRebate* form) {
    auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("tbsTabs"));
    return tabs->tabText(tabs->currentIndex());
}
