// The Switchboard's Statistics and Savings pages, the postmark deadline panel, its Find
// commands and the due alarm at start-up.

#include "app/AppSettings.h"
#include "app/Notifier.h"
#include "app/cLogErr.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "switchboard/DeadlinePanel.h"
#include "switchboard/SavingsPage.h"
#include "switchboard/StatisticsPage.h"
#include "switchboard/frmFind.h"
#include "switchboard/frmSwitchboard.h"

#include <QAction>
#include <QLayout>
#include <QLineEdit>

void frmSwitchboard::BuildStatisticsAndFind() {
    mStatistics = new StatisticsPage(picLVBack(8));
    mStatistics->setObjectName(QStringLiteral("Statistics"));
    picLVBack(8)->layout()->addWidget(mStatistics);

    mDeadlines = new DeadlinePanel(this);
    connect(mDeadlines, &DeadlinePanel::OpenRequested, this, &frmSwitchboard::OpenDeadline);
    // The lists' own rebuilds and deletes refresh the panel too (AddAllListItems, which a
    // reopened store runs, and DeleteRebateRecord).
    Notifier& notifier = Notifier::Instance();
    connect(&notifier, &Notifier::RecordSaved, mDeadlines, &DeadlinePanel::Refresh);
    connect(&notifier, &Notifier::RecordDeleted, mDeadlines, &DeadlinePanel::Refresh);
    connect(&notifier, &Notifier::OptionsChanged, mDeadlines, &DeadlinePanel::Refresh);

    connect(mnuFind, &QAction::triggered, this, &frmSwitchboard::mnuFind_Click);
    connect(mnuPopupFind, &QAction::triggered, this, &frmSwitchboard::mnuFind_Click);
    auto* findModeless = new QAction(this);
    findModeless->setObjectName(QStringLiteral("FindModeless"));
    findModeless->setShortcut(QKeySequence(Qt::Key_F7));
    findModeless->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(findModeless, &QAction::triggered, this, &frmSwitchboard::ShowFindModeless);
    addAction(findModeless);
}

void frmSwitchboard::UpdateStatistics() {
    mStatistics->UpdateStatistics();
}

void frmSwitchboard::UpdateSavings() {
    // Its charts are made the first time the page is shown: most sessions never open it.
    if (!mSavings) {
        mSavings = new SavingsPage(picLVBack(9));
        mSavings->setObjectName(QStringLiteral("Savings"));
        picLVBack(9)->layout()->addWidget(mSavings);
    }
    mSavings->UpdateSavings();
}

void frmSwitchboard::OpenDeadline(const QString& rebateID) {
    try {
        ListItem* item = lvAll->FindByKey(rebateID);
        if (!item) {
            // Gone from the lists meanwhile: both are brought up to date.
            AddAllListItems();
            return;
        }
        SelectTabOf(lvAll);
        lvAll->SelectOnly(item);
        item->EnsureVisible();
        lvAll->SetSelectedItem(item);
        OpenRebate();
    } catch (const VbError& e) {
        LogError(e, objectName(), QStringLiteral("OpenDeadline"));
    }
}

void frmSwitchboard::mnuFind_Click() {
    frmFind& find = frmFind::Load(window());
    if (!gFindWhat.isEmpty()) {
        find.Text1->setText(gFindWhat);
        find.Text1->selectAll();
    }
    // Opened by F7 and still open, it stays as it is: it only takes the text.
    if (find.isVisible()) {
        find.raise();
        find.activateWindow();
        return;
    }
    find.exec();
}

// F7: the Find dialog without blocking the Switchboard. It shows the remembered text only when
// it loads.
void frmSwitchboard::ShowFindModeless() {
    frmFind& find = frmFind::Load(window());
    find.show();
    find.raise();
    find.activateWindow();
}

// With rebates overdue, the Switchboard opens on their page, unless the user turned the alarm
// off ("chkAlarm").
void frmSwitchboard::ShowOverdueAtStart() {
    if (lvOverdue->ListItems().Count() <= 0)
        return;
    // A stored value that doesn't read as a Boolean counts as on.
    if (ReadFlag(Setting::Alarm))
        tbsSwitch->Tabs().Item(QStringLiteral("Overdue"))->SetSelected(true);
}
