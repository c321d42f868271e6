#include "maintenance/frmPurge.h"

#include "app/DeletedRecords.h"
#include "app/Notifier.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "common/ui/ListView.h"
#include "common/ui/modListUtilities.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <memory>

namespace {
const QStringList kIconKeys = {QStringLiteral("Unsent"),   QStringLiteral("Pending"),
                               QStringLiteral("Paid"),     QStringLiteral("Followup"),
                               QStringLiteral("Rejected"), QStringLiteral("Overdue")};

template <class T> T* Named(T* widget, const char* name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}
} // namespace

frmPurge::frmPurge(QWidget* parent)
    : QDialog(parent), picBack(Named(new QWidget, "picBack")),
      cmdClose(Named(new QPushButton(QStringLiteral("&Close")), "cmdClose")),
      cmdRecover(Named(new QPushButton(QStringLiteral("&Recover")), "cmdRecover")),
      cmdPurge(Named(new QPushButton(QStringLiteral("&Purge")), "cmdPurge")),
      lvwRecords(Named(new ListView, "lvwRecords")),
      imgRecordMgr(Named(new QLabel, "imgRecordMgr")),
      lblDesc(Named(new QLabel(QStringLiteral(
                        "Listed below are all of the records that you have deleted. To recover "
                        "or purge individual records, select each record by clicking on it, then "
                        "click 'Recover' or 'Purge'. To recover or purge all records, click the "
                        "'Recover All' or 'Purge All' buttons. Warning: Once a record is purged,  "
                        "it cannot be recovered.")),
                    "lblDesc")),
      sbStatus(Named(new QStatusBar, "sbStatus")), mnuRecords(Named(new QMenu(this), "mnuRecords")),
      mnuSelectAll(mnuRecords->addAction(QStringLiteral("&Select All"))),
      mnuInvertSelection(mnuRecords->addAction(QStringLiteral("&Invert Selection"))) {
    setObjectName(QStringLiteral("frmPurge"));
    setWindowTitle(QStringLiteral("Deleted Record Manager"));
    mnuRecords->setTitle(QStringLiteral("Records"));
    mnuSelectAll->setObjectName(QStringLiteral("mnuSelectAll"));
    mnuInvertSelection->setObjectName(QStringLiteral("mnuInvertSelection"));

    auto icons = std::make_shared<ImageList>(16);
    icons->Add(kIconKeys);
    lvwRecords->SetIcons([icons](const QString& key) { return icons->Icon(key); },
                         [icons](const QString& key) { return icons->Icon(key); });
    lvwRecords->ColumnHeaders().Add(QStringLiteral("Rebate Name"), 2400);
    lvwRecords->ColumnHeaders().Add(QStringLiteral("Product Name"), 2400);
    lvwRecords->ColumnHeaders().Add(QStringLiteral("Date Sent"), 1400);
    lvwRecords->ColumnHeaders().Add(QStringLiteral("RebateID"), 1600);
    lvwRecords->SetView(3);
    lvwRecords->SetMultiSelect(true);
    lvwRecords->SetAccessibleName(QStringLiteral("Deleted records"));

    imgRecordMgr->setPixmap(
        ImageList::Render(ImageList::ResourceFor(QStringLiteral("Delete")), 48));
    imgRecordMgr->setAlignment(Qt::AlignTop);
    lblDesc->setWordWrap(true);

    auto* top = new QHBoxLayout;
    top->addWidget(imgRecordMgr);
    top->addWidget(lblDesc, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton* button : {cmdRecover, cmdPurge, cmdClose}) {
        button->setAutoDefault(false);
        button->setMinimumWidth(90);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    auto* back = new QVBoxLayout(picBack);
    back->addLayout(top);
    back->addWidget(lvwRecords, 1);
    back->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(picBack, 1);
    layout->addWidget(sbStatus);
    sbStatus->setSizeGripEnabled(true);
    // 8000 by 5000 twips at least.
    setMinimumSize(8000 / 15, 5000 / 15);
    resize(640, 420);

    connect(cmdClose, &QPushButton::clicked, this, &frmPurge::cmdClose_Click);
    connect(cmdRecover, &QPushButton::clicked, this, &frmPurge::cmdRecover_Click);
    connect(cmdPurge, &QPushButton::clicked, this, &frmPurge::cmdPurge_Click);
    connect(mnuSelectAll, &QAction::triggered, this, &frmPurge::mnuSelectAll_Click);
    connect(mnuInvertSelection, &QAction::triggered, this, &frmPurge::mnuInvertSelection_Click);
    connect(lvwRecords, &ListView::MouseUp, this, &frmPurge::lvwRecords_MouseUp);
    connect(lvwRecords, &ListView::ColumnClick, this, &frmPurge::lvwRecords_ColumnClick);

    AddDeletedRecords();
    lvwRecords->setFocus();
}

void frmPurge::SetStatus(const QString& text) {
    sbStatus->showMessage(text);
}

void frmPurge::AddDeletedRecords() {
    BusyState busy(QStringLiteral("Loading records..."),
                   [this](const QString& text) { SetStatus(text); });
    lvwRecords->ListItems().Clear();
    try {
        for (const DeletedRecord& row : ReadDeletedRecords()) {
            ListItem* item = lvwRecords->ListItems().Add(row.RebateName, row.IconKey, row.IconKey);
            item->SetSubItems(1, row.ProductName);
            item->SetSubItems(2, row.DateSent);
            item->SetSubItems(3, row.RebateID);
        }
    } catch (const VbError& error) {
        busy.Failed(QStringLiteral("Loading records..."));
        LogError(error, objectName(), QStringLiteral("AddDeletedRecords()"));
    }
    UpdatePurgeButtons();
    SizeListColumns(lvwRecords);
}

void frmPurge::UpdatePurgeButtons() {
    ListItemCollection& items = lvwRecords->ListItems();
    if (items.Count() == 0) {
        cmdPurge->setEnabled(false);
        cmdRecover->setEnabled(false);
        return;
    }
    for (int i = 1; i <= items.Count(); ++i) {
        if (items.Item(i)->Selected()) {
            cmdPurge->setEnabled(true);
            cmdRecover->setEnabled(true);
            return;
        }
    }
}

void frmPurge::ChangeSelected(const QString& title, const QString& question, const QString& status,
                              int (*command)(const QStringList&)) {
    if (MsgBox(question, vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2, title) != vb::vbYes)
        return;
    BusyState busy(status, [this](const QString& text) { SetStatus(text); });
    // A failure here is not reported: the list is rebuilt and the rows stay where they were.
    try {
        if (!AnyDeletedRecords()) {
            // The pointer back for the box; the status stays until the list is reloaded.
            busy.Failed(status);
            MsgBox(QStringLiteral("No deleted records were found in the database. Vantry! "
                                  "Vantry! will now refresh the display."),
                   vb::vbInformation, QStringLiteral("No Deleted Records Found"));
            AddDeletedRecords();
        } else {
            QStringList keys;
            ListItemCollection& items = lvwRecords->ListItems();
            for (int i = 1; i <= items.Count(); ++i)
                if (items.Item(i)->Selected())
                    keys.append(items.Item(i)->SubItems(3));
            command(keys);
            AddDeletedRecords();
        }
    } catch (const VbError&) {
        AddDeletedRecords();
    }
    Q_EMIT Notifier::Instance().ListsStale();
}

void frmPurge::cmdRecover_Click() {
    ChangeSelected(QStringLiteral("Preparing to Recover Deleted Records"),
                   QStringLiteral("Are you sure you want to recover the selected record(s)?"),
                   QStringLiteral("Recovering records..."), &RecoverDeletedRecords);
}

void frmPurge::cmdPurge_Click() {
    ChangeSelected(QStringLiteral("Preparing to Permanently Delete Records"),
                   QStringLiteral("Are you sure you want to purge the selected record(s)? Once a "
                                  "record is purged, it cannot be recovered. Permanently delete "
                                  "the record(s)?"),
                   QStringLiteral("Purging records..."), &PurgeDeletedRecords);
}

void frmPurge::cmdClose_Click() {
    accept();
}

void frmPurge::mnuSelectAll_Click() {
    ListItemCollection& items = lvwRecords->ListItems();
    for (int i = 1; i <= items.Count(); ++i)
        items.Item(i)->SetSelected(true);
}

void frmPurge::mnuInvertSelection_Click() {
    ListItemCollection& items = lvwRecords->ListItems();
    if (items.Count() == 1)
        return;
    // All selected: the row that carries the focus is the one that stays selected.
    ListItem* kept = lvwRecords->SelectedItem();
    int unselected = 0;
    for (int i = 1; i <= items.Count(); ++i) {
        ListItem* item = items.Item(i);
        item->SetSelected(!item->Selected());
        if (!item->Selected())
            ++unselected;
    }
    if (unselected == items.Count() && kept)
        kept->SetSelected(true);
}

void frmPurge::lvwRecords_MouseUp(int button, QPoint globalPos) {
    if (button != 2)
        return;
    mnuRecords->exec(globalPos);
    const bool several = lvwRecords->ListItems().Count() >= 2;
    mnuSelectAll->setEnabled(several);
    mnuInvertSelection->setEnabled(several);
}

void frmPurge::lvwRecords_ColumnClick(int column) {
    SortOnColumn(lvwRecords, column);
}
