#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

// The automatic backups of the store: whole copies in the folder "Backups" beside it, made at
// each start and before every compaction, purge and import, the newest Setting::BackupsKept
// kept. Each is named "Vantry-yyyyMMdd-hhmmss.mdb" after the moment it was made (with "-2",
// "-3" ... for more in the same second).
struct BackupFile {
    QString path;
    QDateTime made;
    qint64 records = -1; // rows of Rebates; -1 when the file can't be read
};

namespace Backups {

// The folder beside gDatabase's file (with a trailing "/").
QString Folder();

// Copies gDatabase's file into a new backup and removes the oldest beyond the number kept.
// Returns the new file's path, or "" when it couldn't be written: the first failure for a
// folder is logged and shown (source "Backups", location "MakeBackup()"), later ones pass
// silently. Never raises.
QString MakeBackup();

// The backups in the folder, newest first, each with its record count.
QList<BackupFile> List();

// Puts the backup in place of the store: checks that the file is a sound store of rebates,
// keeps a backup of the current store first, closes gDatabase, copies the backup's pages into
// the store in one transaction and opens gDatabase again. Raises the failure; the store is then
// as it was and gDatabase open on it.
void Restore(const QString& backupPath);

// Runs between the steps of a restore's copy and may throw a VbError to make it fail half-way
// (tests of that path); nothing set means no faults.
void SetRestoreFaultHook(std::function<void()> hook);

} // namespace Backups
