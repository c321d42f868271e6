// Start-up at 100,000 records: the store opened and the main window shown with the
// Switchboard in it, its lists built, sorted and painted. Each start runs in a fresh process
// of its own, so that the figures are those a user meets: the CPU time of the whole process
// (Qt's own start included) and its peak resident memory. The time reported is that CPU time.
#include "BenchMain.h"
#include "Fixture.h"
#include "RebateRows.h"
#include "common/ui/ListView.h"
#include "data/Database.h"
#include "shell/frmMDI.h"
#include "switchboard/frmSwitchboard.h"

#include <QApplication>
#include <QFile>
#include <QMdiSubWindow>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace {
constexpr int kRecords = 100000;
const char* const kChild = "--start-over";

// The peak resident memory of this program since it started. Not getrusage's: that keeps the
// peak of the forked copy of the parent from before the program was started in it.
double PeakMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    return 0;
}

// The child: starts on the store at `path`, prints "<CPU seconds> <peak MB> <rows listed>".
int StartOver(const QString& path) {
    InitTestResources();
    Fixture fixture;
    gDatabase = Database::Open(path);
    auto* mdi = new frmMDI;
    mdi->resize(1000, 760);
    frmSwitchboard& board = frmSwitchboard::Load();
    mdi->AddChild(&board)->show();
    mdi->show();
    if (!QTest::qWaitForWindowExposed(mdi))
        return 1;
    while (board.Timer1->isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    board.GetCurrentLV()->ActiveView()->repaint();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const double cpu = usage.ru_utime.tv_sec + usage.ru_utime.tv_usec / 1e6 +
                       usage.ru_stime.tv_sec + usage.ru_stime.tv_usec / 1e6;
    printf("%f %f %d\n", cpu, PeakMegabytes(), board.lvAll->ListItems().Count());
    delete mdi;
    return 0;
}

void StartUp(benchmark::State& state, const QString& path) {
    double peak = 0;
    for (auto _ : state) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {kChild, path});
        if (!child.waitForFinished(120000) || child.exitCode() != 0) {
            state.SkipWithError("the start failed");
            return;
        }
        const QList<QByteArray> figures = child.readAllStandardOutput().trimmed().split(' ');
        if (figures.size() != 3) {
            state.SkipWithError("the start reported nothing");
            return;
        }
        state.SetIterationTime(figures[0].toDouble());
        peak = std::max(peak, figures[1].toDouble());
        state.counters["rows in lvAll"] = figures[2].toDouble();
    }
    state.counters["peak MB"] = peak;
}
} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && qstrcmp(argv[1], kChild) == 0) {
        QApplication app(argc, argv); // the parent set the platform
        return StartOver(QString::fromLocal8Bit(argv[2]));
    }
    return RunBenchmarks(argc, argv, kRecords, [] {
        const QString path = gDatabase->Name();
        gDatabase->Close();
        benchmark::RegisterBenchmark(
            QStringLiteral("StartUp/%1 records").arg(kRecords).toStdString().c_str(),
            [path](benchmark::State& state) { StartUp(state, path); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(3);
    });
}
