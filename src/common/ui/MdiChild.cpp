#include "common/ui/MdiChild.h"

#include "common/core/Desktop.h"
#include "common/ui/Forms.h"

#include <QActionGroup>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>

void AttachWindowList(QMenu* windowMenu, std::function<QMdiArea*()> area) {
    auto* list = new QActionGroup(windowMenu);
    QObject::connect(windowMenu, &QMenu::aboutToShow, list, [windowMenu, list, area] {
        for (QAction* entry : list->actions())
            delete entry;
        QMdiArea* mdiArea = area();
        const QList<QMdiSubWindow*> children =
            mdiArea ? mdiArea->subWindowList() : QList<QMdiSubWindow*>();
        if (children.isEmpty())
            return;
        list->addAction(windowMenu->addSeparator());
        int number = 0;
        for (QMdiSubWindow* child : children) {
            QAction* entry = windowMenu->addAction(
                QStringLiteral("&%1 %2").arg(++number).arg(child->windowTitle()));
            entry->setCheckable(true);
            entry->setChecked(child == mdiArea->currentSubWindow());
            list->addAction(entry);
            const QPointer<QMdiArea> target(mdiArea);
            const QPointer<QMdiSubWindow> window(child);
            QObject::connect(entry, &QAction::triggered, list, [target, window] {
                if (target && window)
                    target->setActiveSubWindow(window);
            });
        }
    });
}

RecordForm* RecordForm::Open() {
    return dynamic_cast<RecordForm*>(Forms::Find(QStringLiteral("frmRebate")));
}

bool RecordForm::CloseUnlessChanged(const QString& attempting) {
    RecordForm* form = Open();
    if (!form)
        return true;
    if (form->RecordChanged()) {
        MsgBox(QStringLiteral("Please save the current rebate record before attempting to %1.")
                   .arg(attempting),
               vb::vbOKOnly, QStringLiteral("Unsaved Rebate"));
        form->ZOrder();
        return false;
    }
    form->Unload();
    return true;
}

void RecordForm::Show() {
    Forms::Load(QStringLiteral("frmRebate"));
}
