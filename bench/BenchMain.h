#pragma once

// The frame every benchmark program shares: the Qt application (on the offscreen platform
// unless one is set) with the program's resources, and a temporary program folder whose store
// holds `records` generated rows for the whole run.
#include "Fixture.h"
#include "RebateRows.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <functional>

// `setUp` runs over the open store before the benchmarks (it registers those whose names need
// the store), `tearDown` after them.
inline int RunBenchmarks(int argc, char** argv, int records,
                         const std::function<void()>& setUp = {},
                         const std::function<void()>& tearDown = {}) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitTestResources();
    benchmark::Initialize(&argc, argv);
    {
        Fixture fixture;
        fixture.OpenDatabase(GenerateRebates(records, 20261123));
        if (setUp)
            setUp();
        benchmark::RunSpecifiedBenchmarks();
        if (tearDown)
            tearDown();
    }
    benchmark::Shutdown();
    return 0;
}
