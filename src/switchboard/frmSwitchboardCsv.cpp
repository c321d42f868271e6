// The Switchboard's CSV commands: rows out to a file, a file's records in after a preview.
#include "app/Backups.h"
#include "app/Notifier.h"
#include "app/RebateCsv.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "common/ui/TabStrip.h"
#include "data/RebateTransfer.h"
#include "switchboard/frmImport.h"
#include "switchboard/frmSwitchboard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

const QString kCsvFilter = QStringLiteral("CSV files (*.csv);;All files (*)");

QString StartFolder() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return !documents.isEmpty() && QDir(documents).exists() ? documents : QDir::homePath();
}

// Writes the rows to a file the user names; the file is written whole or not at all.
void Export(const QStringList& ids, const QString& suggestedName, const QString& source,
            const QString& location) {
    if (ids.isEmpty())
        return;
    const QString path = TheDesktop().SaveFileName(
        QStringLiteral("Export to CSV"), StartFolder() + u'/' + suggestedName, kCsvFilter);
    if (path.isEmpty())
        return;
    BusyState busy(QStringLiteral("Exporting rebates..."));
    QByteArray bytes;
    qsizetype count = 0;
    try {
        const QList<QVariantList> rows = ReadRebateValues(ids);
        count = rows.size();
        bytes = RebateCsv::Write(RebateColumns(), rows);
    } catch (const VbError& error) {
        busy.Failed(QStringLiteral("Error..."));
        LogError(error, source, location);
        return;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        busy.Failed(QStringLiteral("Export failed..."));
        MsgBox(QStringLiteral("The file '%1' could not be written: %2\r\n\r\nNothing was "
                              "exported.")
                   .arg(QDir::toNativeSeparators(path), file.errorString()),
               vb::vbExclamation, QStringLiteral("Export Failed"));
        return;
    }
    busy.Done(frmImport::Rebates(count) + QStringLiteral(" exported..."));
}

} // namespace

void frmSwitchboard::mnuExportSelected_Click() {
    Export(ListedRebateIDs(true), QStringLiteral("Selected Rebates.csv"), objectName(),
           QStringLiteral("mnuExportSelected_Click"));
}

void frmSwitchboard::mnuExportList_Click() {
    const Tab* tab = tbsSwitch->SelectedItem();
    Export(ListedRebateIDs(false), (tab ? tab->Caption() : QString()) + QStringLiteral(".csv"),
           objectName(), QStringLiteral("mnuExportList_Click"));
}

void frmSwitchboard::mnuImport_Click() {
    const QString path =
        TheDesktop().OpenFileName(QStringLiteral("Import from CSV"), StartFolder(), kCsvFilter);
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        MsgBox(QStringLiteral("The file '%1' could not be read: %2")
                   .arg(QDir::toNativeSeparators(path), file.errorString()),
               vb::vbExclamation, QStringLiteral("Import Failed"));
        return;
    }
    const QByteArray bytes = file.readAll();
    file.close();
    try {
        QList<RebateColumn> columns;
        RebateCsv::Reading reading;
        {
            BusyState busy(QStringLiteral("Reading file..."));
            columns = RebateColumns();
            reading = RebateCsv::Read(bytes, columns, ReadRebateIDs());
        }
        frmImport preview(reading, columns, QFileInfo(path).fileName(), this);
        if (preview.exec() != QDialog::Accepted || reading.rows.isEmpty())
            return;
        {
            BusyState busy(QStringLiteral("Importing rebates..."));
            Backups::MakeBackup();
            InsertRebateValues(reading.rows);
        }
        Q_EMIT Notifier::Instance().ListsStale();
        MsgBox(QStringLiteral("%1 from '%2' added to your database.")
                   .arg(frmImport::Rebates(reading.rows.size()), QFileInfo(path).fileName()),
               vb::vbInformation, QStringLiteral("Import Complete"));
    } catch (const VbError& error) {
        LogError(error, objectName(), QStringLiteral("mnuImport_Click"));
    }
}
