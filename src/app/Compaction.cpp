#include "app/Compaction.h"

#include "app/Backups.h"
#include "app/cLogErr.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/Database.h"
#include "data/RebateQueries.h"
#include "data/StoreBackup.h"

#include <QFile>

namespace {
std::function<void(int)> gFaultHook;

void Step(int number, const std::function<void(const QString&)>& status, const QString& text) {
    if (status)
        status(text);
    if (gFaultHook)
        gFaultHook(number);
}

void Remove(const QString& path) {
    QFile file(path);
    if (file.exists() && !file.remove())
        throw VbError(
            VbError::PathFileAccess,
            QStringLiteral("Path/File access error: %1 (%2)").arg(path, file.errorString()));
}

void Rename(const QString& from, const QString& to) {
    QFile file(from);
    if (!file.rename(to))
        throw VbError(VbError::PathFileAccess,
                      QStringLiteral("Path/File access error: %1 to %2 (%3)")
                          .arg(from, to, file.errorString()));
}
} // namespace

QString CompactLivePath() {
    return DataPath() + QStringLiteral("Vantry.mdb");
}

QString CompactTargetPath() {
    return DataPath() + QStringLiteral("Vantemp.mdb");
}

QString CompactBackupPath() {
    return DataPath() + QStringLiteral("Vantmpbu.mdb");
}

void Compaction::SetFaultHook(std::function<void(int)> hook) {
    gFaultHook = std::move(hook);
}

bool CompactRebateDatabase(const std::function<void(const QString&)>& status) {
    const QString live = CompactLivePath();
    const QString target = CompactTargetPath();
    const QString backup = CompactBackupPath();
    bool result = false;
    bool liveMoved = false;     // the live file lies under the backup's name
    bool liveCompacted = false; // the live file is the new copy, the old one is the backup
    Backups::MakeBackup();
    try {
        Step(3, status, QStringLiteral("Removing old temp files..."));
        Remove(target);

        Step(4, status, QStringLiteral("Closing active database connection..."));
        if (gDatabase)
            gDatabase->Close();

        Step(5, status, QStringLiteral("Compacting/repairing to temp file..."));
        qint64 rows = 0;
        {
            auto source = Database::Open(live);
            rows = RebateQueries::CountRebates(*source);
            StoreBackup::CompactInto(*source, target);
            source->Close();
        }

        Step(6, status, QStringLiteral("Verifying compacted database..."));
        {
            auto copy = Database::Open(target);
            if (RebateQueries::CountRebates(*copy) != rows)
                throw VbError(dbError::NotADatabase,
                              QStringLiteral("The compacted database doesn't hold every record."));
            Step(7, status, QStringLiteral("Database verified..."));
            copy->Close();
        }

        Step(8, status, QStringLiteral("Deleting old temp file..."));
        Remove(backup);

        Step(9, status, QStringLiteral("Renaming current database to backup..."));
        Rename(live, backup);
        liveMoved = true;

        Step(10, status, QStringLiteral("Renaming compacted database to current..."));
        Rename(target, live);
        liveMoved = false;
        liveCompacted = true;

        Step(11, status, QStringLiteral("Reopening database connection..."));
        gDatabase = Database::Open(live);
        result = true;
    } catch (const VbError& error) {
        LogError(error, QStringLiteral("ModUtilities"), QStringLiteral("CompactRebateDatabase()"));
    }
    if (!result) {
        // The user's data must be where the next query and the next start look for it.
        if (liveMoved && !FileExists(live))
            QFile::rename(backup, live);
        if (FileExists(live) && !(gDatabase && gDatabase->IsOpen())) {
            try {
                gDatabase = Database::Open(live);
            } catch (const VbError&) {
                // The compacted file won't open: the old one comes back in its place.
                if (liveCompacted && QFile::rename(live, target) && QFile::rename(backup, live)) {
                    try {
                        gDatabase = Database::Open(live);
                    } catch (const VbError&) {
                        // Left closed: the next start reports the file.
                    }
                }
            }
        }
    }
    if (status)
        status(QStringLiteral("Ready..."));
    return result;
}

QString RestoreDatabaseFromCompaction(const QString& livePath) {
    if (FileExists(livePath))
        return QString();
    for (const QString& candidate : {CompactBackupPath(), CompactTargetPath()}) {
        if (FileExists(candidate) && QFile::copy(candidate, livePath))
            return candidate;
    }
    return QString();
}
