#include "app/cLogErr.h"

#include "app/AppSettings.h"
#include "common/core/Clock.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/modUtilities.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QStringList>
#include <algorithm>
#include <cerrno>
#include <limits>
#include <sys/resource.h>
#include <sys/sysinfo.h>

std::unique_ptr<cLogErr> gErrorLog;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

std::function<QString()> gActiveControlNameSource;
std::function<MemoryStatus()> gMemoryStatusSource;

// "Key:   1234 kB" lines of a /proc file, in bytes.
QHash<QByteArray, qint64> ReadKilobyteTable(const QString& path) {
    QHash<QByteArray, qint64> table;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return table;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        const QList<QByteArray> fields = line.mid(colon + 1).simplified().split(' ');
        bool ok = false;
        const qint64 value = fields.value(0).toLongLong(&ok);
        if (ok && fields.value(1) == "kB")
            table.insert(line.left(colon), value * 1024);
    }
    return table;
}

// The old figures were unsigned 32-bit counts read into a signed 32-bit integer. Today's
// amounts don't fit: they stop at the largest such integer rather than wrap to a negative
// count that would tell the reader of the log nothing.
int AsOldFigure(qint64 bytes) {
    return static_cast<int>(std::clamp<qint64>(bytes, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

QString Figure(qint64 bytes) {
    return Format(AsOldFigure(bytes), QStringLiteral("#,##0"));
}

QString UserMessage(const QString& description) {
    return description + kCrLf + kCrLf +
           QStringLiteral("Please report this error to Vantry! Vantry! Technical") +
           QStringLiteral(" Support at ") + kSupportMailbox + QLatin1Char('.') + kCrLf + kCrLf +
           QStringLiteral("To send a detailed bug report, follow these steps:") + kCrLf + kCrLf +
           QStringList{QStringLiteral("\t1. Click on the 'Options' button on the toolbar"),
                       QStringLiteral("\t2. Click on the 'General' tab"),
                       QStringLiteral("\t3. Click on the 'View Error Log' button"),
                       QStringLiteral("\t4. Click on the 'Send Log to KVX' button")}
               .join(kCrLf);
}

// Logging is on unless the setting reads as False; a value that isn't a Boolean at all
// keeps it on, so that no error goes unrecorded because of a damaged setting.
bool ErrorLoggingOn() {
    return ReadFlag(Setting::ErrorLogging);
}

QString ActiveControlName() {
    if (!gActiveControlNameSource)
        return {};
    try {
        return gActiveControlNameSource();
    } catch (...) {
        return {};
    }
}

// Why a file operation failed, in the words of the old file errors. The system's own reason
// (errno, read right after the failing call) says more than QFile's error kinds, which
// report a refused open or a full disk only as an open or a write error.
QString FileFailure(int systemError) {
    switch (systemError) {
    case EACCES:
    case EPERM:
    case EROFS:
        return QStringLiteral("Permission denied");
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return QStringLiteral("Disk full");
    default:
        return VbError::StandardDescription(VbError::PathFileAccess);
    }
}

} // namespace

MemoryStatus ReadMemoryStatus() {
    MemoryStatus status;
    const QHash<QByteArray, qint64> memory = ReadKilobyteTable(QStringLiteral("/proc/meminfo"));
    if (memory.contains("MemTotal")) {
        status.totalPhys = memory.value("MemTotal");
        status.availPhys = memory.value("MemAvailable", memory.value("MemFree"));
        status.totalPageFile = status.totalPhys + memory.value("SwapTotal");
        status.availPageFile = status.availPhys + memory.value("SwapFree");
    } else if (struct sysinfo info{}; sysinfo(&info) == 0) {
        const qint64 unit = info.mem_unit;
        status.totalPhys = static_cast<qint64>(info.totalram) * unit;
        status.availPhys = static_cast<qint64>(info.freeram + info.bufferram) * unit;
        status.totalPageFile = status.totalPhys + static_cast<qint64>(info.totalswap) * unit;
        status.availPageFile = status.availPhys + static_cast<qint64>(info.freeswap) * unit;
    }
    if (status.totalPhys > 0)
        status.memoryLoad =
            static_cast<int>((status.totalPhys - status.availPhys) * 100 / status.totalPhys);

    // The address space: its limit when one is set, else the 128 TiB a 64-bit process has.
    status.totalVirtual = qint64(1) << 47;
    if (struct rlimit limit{}; getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        status.totalVirtual = static_cast<qint64>(limit.rlim_cur);
    const qint64 mapped = ReadKilobyteTable(QStringLiteral("/proc/self/status")).value("VmSize");
    status.availVirtual = std::max<qint64>(0, status.totalVirtual - mapped);
    return status;
}

cLogErr::cLogErr() {
    Init();
}

void cLogErr::Init(std::optional<QString> AppName, std::optional<QString> LogFile,
                   std::optional<QString> ProgramName, std::optional<QString> Version) {
    mAppName = AppName.value_or(AppExeName());
    mLogFile = LogFile.value_or(DataPath() + mAppName + QStringLiteral(".log"));
    mProgramName = ProgramName.value_or(mAppName);
    mVersion = Version.value_or(AppVersion());
}

void cLogErr::LogIt(int Err_Number, const QString& Err_Desc, const QString& Err_Source,
                    const std::optional<QString>& Err_Location, const QString& /*Err_Msg*/,
                    int Err_Icon, const QString& Err_Title) {
    const QString message = UserMessage(Err_Desc);
    if (ErrorLoggingOn()) {
        const MemoryStatus memory =
            gMemoryStatusSource ? gMemoryStatusSource() : ReadMemoryStatus();
        QFile file(mLogFile);
        errno = 0;
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
            ReportUnwrittenLog(FileFailure(errno), Err_Desc, Err_Icon, Err_Title);
            return;
        }
        QStringList lines{
            QStringLiteral("Date:\t\t\t") + Format(Now(), QStringLiteral("dd-mmm-yy hh:mm:ss")),
            QStringLiteral("Program:\t\t") + mProgramName + QStringLiteral(" Ver: ") + mVersion,
            QStringLiteral("Error Number:\t\t") + QString::number(Err_Number),
            QStringLiteral("Description:\t\t") + Err_Desc,
            QStringLiteral("Error Source:\t\t") + Err_Source,
        };
        if (Err_Location)
            lines << QStringLiteral("Error Location:\t\t") + *Err_Location;
        if (const QString control = ActiveControlName(); !control.isEmpty())
            lines << QStringLiteral("Active Control:\t\t") + control;
        lines << QStringLiteral("Memory Load:\t\t") + QString::number(memory.memoryLoad) +
                     QLatin1Char('%')
              << QStringLiteral("Total Virtual: \t\t") + Figure(memory.totalVirtual)
              << QStringLiteral("Available Virtual: \t") + Figure(memory.availVirtual)
              << QStringLiteral("Total Page File: \t") + Figure(memory.totalPageFile)
              << QStringLiteral("Available Page File: \t") + Figure(memory.availPageFile)
              << QStringLiteral("Total Physical: \t") + Figure(memory.totalPhys)
              << QStringLiteral("Available Physical: \t") + Figure(memory.availPhys)
              << QString(50, QLatin1Char('*'));
        // One write of the whole block, so an entry is never split by a failure halfway.
        const QByteArray block = (lines.join(kCrLf) + kCrLf).toUtf8();
        errno = 0;
        if (file.write(block) != block.size() || !file.flush()) {
            const QString failure = FileFailure(errno);
            file.close();
            ReportUnwrittenLog(failure, Err_Desc, Err_Icon, Err_Title);
            return;
        }
        file.close();
    }
    DbgBox(message, Err_Icon, Err_Title);
}

// The log's own failure never hides the error it was to record: the user still sees that
// error (a save that failed, say), with the log's failure as its second line.
void cLogErr::ReportUnwrittenLog(const QString& failure, const QString& Err_Desc, int Err_Icon,
                                 const QString& Err_Title) {
    MsgBox(failure, vb::vbExclamation, QStringLiteral("Error Writing Log File"));
    DbgBox(UserMessage(Err_Desc + kCrLf + QStringLiteral("The error log could not be written: ") +
                       failure + QLatin1Char('.')),
           Err_Icon, Err_Title);
}

void cLogErr::DbgBox(const QString& Message, int Style, const QString& Title) {
    MsgBox(Message, Style, Title);
}

bool cLogErr::PurgeIt() {
    if (MsgBox(QStringLiteral("Are you sure you want to purge the error log?"),
               vb::vbYesNo | vb::vbQuestion,
               QStringLiteral("Preparing to Delete Error Log")) != vb::vbYes)
        return false;
    if (!FileExists(mLogFile)) {
        MsgBox(QStringLiteral("Unable to locate an error log to purge. Please purge the file "
                              "manually using Windows Explorer."),
               vb::vbExclamation, QStringLiteral("Unable to Complete Action"));
        return false;
    }
    int number = VbError::FileNotFound; // gone between the look and the deletion
    try {
        if (KillFile(mLogFile)) {
            MsgBox(QStringLiteral("The error log was successfully purged."), vb::vbOKOnly,
                   QStringLiteral("Action Successful"));
            return true;
        }
    } catch (const VbError& e) {
        number = e.Number();
    }
    LogIt(number,
          QStringLiteral("An error occurred while attempting to purge the error log. Please "
                         "delete the error log manually using Windows Explorer."),
          QStringLiteral("cLogErr"), QStringLiteral("PurgeIt()"), QString(), vb::vbExclamation,
          kErrorTitle);
    return false;
}

QString cLogErr::Display() {
    QFile file(mLogFile);
    // Opening for reading and writing creates a missing log, empty; a log that may only be
    // read is still shown.
    if (!file.open(QIODevice::ReadWrite) && !file.open(QIODevice::ReadOnly))
        throw VbError(VbError::PathFileAccess);
    return QString::fromUtf8(file.readAll());
}

void cLogErr::SetActiveControlNameSource(std::function<QString()> source) {
    gActiveControlNameSource = std::move(source);
}

void cLogErr::SetMemoryStatusSource(std::function<MemoryStatus()> source) {
    gMemoryStatusSource = std::move(source);
}

void LogError(const VbError& error, const QString& source, const QString& location,
              const QString& title) {
    if (gErrorLog) {
        gErrorLog->LogIt(error.Number(), error.Description(), source, location, QString(),
                         vb::vbExclamation, title);
        return;
    }
    if (!QCoreApplication::instance()) {
        // Past the application object there is neither a program folder nor a desktop.
        qWarning("%s: %s %d: %s", qUtf8Printable(source), qUtf8Printable(location), error.Number(),
                 qUtf8Printable(error.Description()));
        return;
    }
    cLogErr lateLog;
    lateLog.LogIt(error.Number(), error.Description(), source, location, QString(),
                  vb::vbExclamation, title);
}
