#include "maintenance/frmRestore.h"

#include "app/Backups.h"
#include "app/Notifier.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "common/ui/MdiChild.h"
#include "data/Database.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
enum Column { Made, Records, File };

QString MadeText(const QDateTime& made) {
    // The program's own date and time, as the status bar shows them.
    return Format(made, QStringLiteral("m/d/yyyy h:nn:ss AM/PM"));
}
} // namespace

frmRestore::frmRestore(QWidget* parent)
    : QDialog(parent), lstBackups(new QTreeWidget), lblDesc(new QLabel),
      cmdRestore(new QPushButton(QStringLiteral("&Restore"))),
      cmdClose(new QPushButton(QStringLiteral("&Close"))) {
    setObjectName(QStringLiteral("frmRestore"));
    setWindowTitle(QStringLiteral("Restore from Backup"));
    lstBackups->setObjectName(QStringLiteral("lstBackups"));
    lblDesc->setObjectName(QStringLiteral("lblDesc"));
    cmdRestore->setObjectName(QStringLiteral("cmdRestore"));
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    lblDesc->setWordWrap(true);
    lblDesc->setText(QStringLiteral(
        "Choose a backup and click 'Restore' to put it in place of your database. A backup of "
        "your database as it is now is made first, so a restore can be undone."));
    lstBackups->setHeaderLabels(
        {QStringLiteral("Made"), QStringLiteral("Records"), QStringLiteral("File")});
    lstBackups->setRootIsDecorated(false);
    lstBackups->setAllColumnsShowFocus(true);
    lstBackups->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    cmdClose->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdRestore);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblDesc);
    layout->addWidget(lstBackups);
    layout->addLayout(buttons);
    resize(560, 340);

    connect(cmdRestore, &QPushButton::clicked, this, &frmRestore::cmdRestore_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(lstBackups, &QTreeWidget::itemDoubleClicked, this, &frmRestore::cmdRestore_Click);
    FillList();
}

void frmRestore::FillList() {
    lstBackups->clear();
    for (const BackupFile& backup : Backups::List()) {
        auto* row = new QTreeWidgetItem(lstBackups);
        row->setText(Made, MadeText(backup.made));
        row->setText(Records, backup.records < 0 ? QStringLiteral("unreadable")
                                                 : QString::number(backup.records));
        row->setTextAlignment(Records, Qt::AlignRight | Qt::AlignVCenter);
        row->setText(File, QDir(backup.path).dirName());
        row->setData(Made, Qt::UserRole, backup.path);
    }
    if (lstBackups->topLevelItemCount() > 0)
        lstBackups->setCurrentItem(lstBackups->topLevelItem(0));
    cmdRestore->setEnabled(lstBackups->topLevelItemCount() > 0);
}

void frmRestore::cmdRestore_Click() {
    const QTreeWidgetItem* row = lstBackups->currentItem();
    if (!row)
        return;
    const QString path = row->data(Made, Qt::UserRole).toString();
    const QString made = row->text(Made);
    // The open rebate lives on the connection the restore closes.
    if (!RecordForm::CloseUnlessChanged(QStringLiteral("restore a backup")))
        return;
    if (MsgBox(QStringLiteral("Replace your database with the backup made %1, holding %2 "
                              "records?\r\n\r\nA backup of your database as it is now is made "
                              "first.")
                   .arg(made, row->text(Records)),
               vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2,
               QStringLiteral("Restore from Backup")) != vb::vbYes)
        return;
    bool restored = false;
    {
        BusyState busy(QStringLiteral("Restoring database..."));
        try {
            Backups::Restore(path);
            restored = true;
        } catch (const VbError& error) {
            busy.Failed(QStringLiteral("Error..."));
            LogError(error, objectName(), QStringLiteral("cmdRestore_Click"));
        }
    }
    if (gDatabase && gDatabase->IsOpen()) {
        Q_EMIT Notifier::Instance().DatabaseReopened();
        // Even a restore that failed late may have put the backup's records in place.
        Q_EMIT Notifier::Instance().ListsStale();
    }
    if (!restored) {
        MsgBox(QStringLiteral("The database was not restored. Your database is as it was "
                              "before."),
               vb::vbExclamation, QStringLiteral("Restore Failed"));
        FillList();
        return;
    }
    MsgBox(QStringLiteral("Your database has been restored from the backup made %1.").arg(made),
           vb::vbInformation, QStringLiteral("Restore Complete"));
    accept();
}
