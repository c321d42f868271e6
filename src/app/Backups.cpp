#include "app/Backups.h"

#include "app/AppSettings.h"
#include "app/Compaction.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/Schema.h"
#include "data/StoreBackup.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

namespace {

std::function<void()> gRestoreFaultHook;

const QRegularExpression& NamePattern() {
    static const QRegularExpression pattern(
        QStringLiteral(R"(^Vantry-(\d{8}-\d{6})(?:-(\d+))?\.mdb$)"));
    return pattern;
}

QString StorePath() {
    return gDatabase ? gDatabase->Name() : CompactLivePath();
}

struct Named {
    QString path;
    QDateTime made;
    int sequence;
};

// The backups in the folder, newest first.
QList<Named> Scan(const QString& folder) {
    QList<Named> found;
    const QStringList names = QDir(folder).entryList({QStringLiteral("Vantry-*.mdb")}, QDir::Files);
    for (const QString& name : names) {
        const QRegularExpressionMatch match = NamePattern().match(name);
        if (!match.hasMatch())
            continue;
        const QDateTime made =
            QDateTime::fromString(match.captured(1), QStringLiteral("yyyyMMdd-hhmmss"));
        if (made.isValid())
            found.append(
                {folder + name, made, match.captured(2).isEmpty() ? 1 : match.captured(2).toInt()});
    }
    std::sort(found.begin(), found.end(), [](const Named& a, const Named& b) {
        return a.made != b.made ? a.made > b.made : a.sequence > b.sequence;
    });
    return found;
}

// The next name of this second: the number after the highest in use, even when older backups
// of the same second have been pruned, so that a new backup always counts as the newest.
QString NewName(const QString& folder, const QList<Named>& existing) {
    const QDateTime now = Now();
    const QString stamp = now.toString(QStringLiteral("yyyyMMdd-hhmmss"));
    int highest = 0;
    for (const Named& backup : existing)
        if (backup.made.toString(QStringLiteral("yyyyMMdd-hhmmss")) == stamp)
            highest = std::max(highest, backup.sequence);
    return highest == 0 ? folder + QStringLiteral("Vantry-%1.mdb").arg(stamp)
                        : folder + QStringLiteral("Vantry-%1-%2.mdb").arg(stamp).arg(highest + 1);
}

// Writes a backup; raises the failure.
QString Write(const QString& folder) {
    if (!QDir().mkpath(folder))
        throw VbError(VbError::PathFileAccess,
                      QStringLiteral("The folder '%1' can't be made.").arg(folder));
    const QString path = NewName(folder, Scan(folder));
    StoreBackup::Copy(StorePath(), path);
    return path;
}

void Prune(const QString& folder) {
    const QList<Named> found = Scan(folder);
    for (qsizetype i = ReadWhole(Setting::BackupsKept); i < found.size(); ++i)
        QFile::remove(found[i].path);
}

} // namespace

QString Backups::Folder() {
    return QFileInfo(StorePath()).absolutePath() + QStringLiteral("/Backups/");
}

QString Backups::MakeBackup() {
    // One box per folder and run: a backup is made at every start and before every purge,
    // and the same failure each time says nothing new.
    static QSet<QString> failuresTold;
    const QString folder = Folder();
    try {
        const QString path = Write(folder);
        Prune(folder);
        return path;
    } catch (const VbError& error) {
        if (!failuresTold.contains(folder)) {
            failuresTold.insert(folder);
            LogError(VbError(error.Number(),
                             QStringLiteral("A backup of your database could not be written to "
                                            "'%1': %2\r\nYour data is intact and the program "
                                            "goes on without this backup.")
                                 .arg(QDir::toNativeSeparators(folder), error.Description())),
                     QStringLiteral("Backups"), QStringLiteral("MakeBackup()"));
        }
    } catch (const std::exception&) {
        // A backup is a precaution: nothing the program does waits on it.
    }
    return QString();
}

QList<BackupFile> Backups::List() {
    QList<BackupFile> result;
    for (const Named& backup : Scan(Folder()))
        result.append({backup.path, backup.made, StoreBackup::CountRebates(backup.path)});
    return result;
}

void Backups::Restore(const QString& backupPath) {
    if (const QString problem = StoreBackup::CheckStore(backupPath); !problem.isEmpty())
        throw VbError(dbError::NotADatabase,
                      QStringLiteral("The backup '%1' can't be used: %2")
                          .arg(QDir::toNativeSeparators(backupPath), problem));
    const QString folder = Folder();
    const QString store = StorePath();
    // The store as it is now becomes a backup of its own, so a restore can be undone. The
    // number kept is enforced only afterwards, which keeps the chosen file until it is copied.
    Write(folder);
    if (gDatabase)
        gDatabase->Close();
    try {
        StoreBackup::Copy(backupPath, store, gRestoreFaultHook);
    } catch (...) {
        gDatabase = Database::Open(store);
        throw;
    }
    gDatabase = Database::Open(store);
    // A backup made by an older version lacks the newer tables, as an older store does at start.
    if (!gDatabase->IsReadOnly())
        AddMissingTables(*gDatabase);
    Prune(folder);
}

void Backups::SetRestoreFaultHook(std::function<void()> hook) {
    gRestoreFaultHook = std::move(hook);
}
