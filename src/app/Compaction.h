#pragma once

#include <QString>
#include <functional>

// The three files of a compaction, all in the program's folder.
QString CompactLivePath();   // AppPath() + "Vantry.mdb"
QString CompactTargetPath(); // AppPath() + "Vantemp.mdb"
QString CompactBackupPath(); // AppPath() + "Vantmpbu.mdb"

// Compacts the live database into the target with VACUUM INTO, proves that the copy opens and
// holds every row of Rebates, keeps the old file as the backup and puts the copy in its place.
// True when the live file is the compacted one and gDatabase is open on it again. Each step's
// status text goes to `status` before the step runs. A failure is logged (source
// "ModUtilities", location "CompactRebateDatabase()") and gives false; the live file is then
// put back from the backup when a rename left it missing, and gDatabase is opened again
// whenever the live file is there.
bool CompactRebateDatabase(const std::function<void(const QString&)>& status);

namespace Compaction {
// Runs before each numbered step (3 to 11) and may throw a VbError to make that step fail
// (tests of the failure paths); nothing set means no faults.
void SetFaultHook(std::function<void(int step)> hook);
} // namespace Compaction

// Start-up's repair of a failed compaction: when the live database is missing but the backup
// or the compaction target of an earlier run is there, copies that file (the backup first) to
// `livePath` and returns its name; "" when nothing was put back. Never overwrites a file.
QString RestoreDatabaseFromCompaction(const QString& livePath);
