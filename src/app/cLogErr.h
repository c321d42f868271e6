#pragma once

#include "common/core/Desktop.h"
#include "common/core/VbError.h"

#include <QString>
#include <functional>
#include <memory>
#include <optional>

// The title of the standard error box.
inline const QString kErrorTitle = QStringLiteral("Vantry! Vantry! Error");

// The machine's memory as the log reports it, in the old six figures plus the load.
struct MemoryStatus {
    int memoryLoad = 0;       // percent of physical memory in use
    qint64 totalVirtual = 0;  // the process's address space, in bytes
    qint64 availVirtual = 0;  // the part of it not yet mapped
    qint64 totalPageFile = 0; // memory that can be committed: physical plus swap
    qint64 availPageFile = 0; // available physical plus free swap
    qint64 totalPhys = 0;
    qint64 availPhys = 0;
};

// Reads /proc/meminfo (sysinfo() when it can't be read), the address-space limit and the
// process's mapped size.
MemoryStatus ReadMemoryStatus();

// The error log: a plain text file beside the program that only grows, one fixed block of
// lines per error, and the standard box that tells the user how to send a bug report.
// Each entry opens and closes the file; the object holds no open file.
class cLogErr {
public:
    cLogErr(); // with the defaults of Init()

    // Every argument may be left out: the executable's base name, DataPath() + AppName +
    // ".log", AppName, and AppVersion().
    void Init(std::optional<QString> AppName = std::nullopt,
              std::optional<QString> LogFile = std::nullopt,
              std::optional<QString> ProgramName = std::nullopt,
              std::optional<QString> Version = std::nullopt);

    // Appends the block to the log when "chkErrorLogging" of section "Options" is on, then
    // shows Err_Desc with the bug report steps in a box of style Err_Icon, titled Err_Title.
    // A missing Err_Location leaves its line out. Err_Msg has no effect. When the log can't
    // be written, the box "Error Writing Log File" says why, instead of the user's message.
    void LogIt(int Err_Number, const QString& Err_Desc, const QString& Err_Source,
               const std::optional<QString>& Err_Location = std::nullopt,
               const QString& Err_Msg = QString(), int Err_Icon = vb::vbExclamation,
               const QString& Err_Title = kErrorTitle);
    // A plain message box.
    void DbgBox(const QString& Message, int Style, const QString& Title);
    // Asks, then deletes the log file; true when it was deleted.
    bool PurgeIt();
    // The whole log as text; "" when there is none, and a missing log file is then created
    // empty. Raises 75 when the file can't be opened at all.
    QString Display();

    const QString& AppName() const { return mAppName; }
    const QString& LogFile() const { return mLogFile; }
    const QString& ProgramName() const { return mProgramName; }
    const QString& Version() const { return mVersion; }

    // Where the name of the control that has the focus comes from (the UI hands in the
    // focused widget's objectName). Without a source, no "Active Control:" line is written.
    static void SetActiveControlNameSource(std::function<QString()> source);
    // Where the memory figures come from; nothing means ReadMemoryStatus().
    static void SetMemoryStatusSource(std::function<MemoryStatus()> source);

private:
    void ReportUnwrittenLog(const QString& failure, const QString& Err_Desc, int Err_Icon,
                            const QString& Err_Title);

    QString mAppName;
    QString mLogFile;
    QString mProgramName;
    QString mVersion;
};

// The one error log, from the start of the program to its end.
extern std::unique_ptr<cLogErr> gErrorLog;

// The standard trap: logs the error with style 48 under the given source and location.
// After gErrorLog has been released at the end of the program, a fresh log object with the
// default settings takes the entry, so an error of the last moments is still written and
// shown. Once the application object is gone, the error goes to the program's warning
// output instead.
void LogError(const VbError& error, const QString& source, const QString& location,
              const QString& title = kErrorTitle);
