#pragma once

// The baseline of every benchmark: the same rows read straight through the SQLite C
// interface, on a connection of its own to the same file, every column of every row touched
// by its storage type. A figure "x raw" is a time over this one, measured in the same run.
#include <QElapsedTimer>
#include <QString>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <functional>
#include <sqlite3.h>

inline std::int64_t RawScan(const QString& path, const QString& sql) {
    sqlite3* db = nullptr;
    std::int64_t checksum = 0;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &statement, nullptr) ==
            SQLITE_OK) {
            const int columns = sqlite3_column_count(statement);
            while (sqlite3_step(statement) == SQLITE_ROW) {
                for (int c = 0; c < columns; ++c) {
                    switch (sqlite3_column_type(statement, c)) {
                    case SQLITE_INTEGER:
                        checksum += sqlite3_column_int64(statement, c);
                        break;
                    case SQLITE_FLOAT:
                        checksum += static_cast<std::int64_t>(sqlite3_column_double(statement, c));
                        break;
                    case SQLITE_TEXT:
                        checksum += sqlite3_column_bytes16(statement, c);
                        break;
                    default:
                        break;
                    }
                }
                ++checksum;
            }
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
    return checksum;
}

// The number of rows `from` selects: a raw scan of no column counts one per row.
inline int RawRowCount(const QString& path, const QString& from) {
    return static_cast<int>(RawScan(path, QStringLiteral("SELECT NULL") + from));
}

// The time `work` takes, in milliseconds.
inline double MsOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// The time of RawScan(path, sql), in milliseconds.
inline double RawScanMs(const QString& path, const QString& sql) {
    std::int64_t checksum = 0;
    const double ms = MsOf([&] { checksum = RawScan(path, sql); });
    return checksum >= 0 ? ms : -ms; // the checksum is used, so the scan can't be left out
}

// Times `work` once per iteration and, outside the timing, a raw scan of every column of the
// rows `from` selects and one of just `columns`: the counters "x raw" and "x raw of its
// columns" are the work's time over theirs. Returns the raw scans' time of every column.
inline double MeasureOverRaw(benchmark::State& state, const QString& path, const QString& from,
                             const QString& columns, const std::function<void()>& work) {
    double workMs = 0;
    double rawMs = 0;
    double rawColumnsMs = 0;
    for (auto _ : state) {
        workMs += MsOf(work);
        state.PauseTiming();
        rawMs += RawScanMs(path, QStringLiteral("SELECT *") + from);
        rawColumnsMs += RawScanMs(path, QStringLiteral("SELECT ") + columns + from);
        state.ResumeTiming();
    }
    state.counters["x raw"] = workMs / rawMs;
    state.counters["x raw of its columns"] = workMs / rawColumnsMs;
    return rawMs;
}
