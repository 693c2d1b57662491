// What a workspace makes of a desktop that cannot be asked.
#pragma once

#include "tests/support/SampleApp.h"

#include <QElapsedTimer>
#include <QTest>

namespace kestrin::samples {

/// Every call of the contract answers in time and finds nothing, whatever the desktop does: the waits for its
/// parts do not add up. `process` runs.
inline void callEverythingInVain(engine::Workspace &workspace, qint32 process) {
    const auto isQuick = [](const char *call, auto body) {
        QElapsedTimer timer;
        timer.start();
        body();
        QVERIFY2(timer.elapsed() < 3000, call);
    };
    isQuick("list", [&] { QVERIFY(running(workspace).isEmpty()); });
    // Nobody may be told that it is no longer running.
    isQuick("terminate", [&] { QCOMPARE(workspace.terminate(process), engine::Termination::refused); });
    isQuick("subscribe", [&] { Launches launches(workspace); });
    isQuick("sight", [&] { QVERIFY(!workspace.sight().isFull()); });
}

} // namespace kestrin::samples
