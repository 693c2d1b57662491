// Knowing that nothing more is to be heard of what happened before.
#pragma once

#include "foundation/FileWatch.h"
#include "tests/support/Files.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace kestrin::samples {

/// Until everything has been told that happened to watched files: the last change is one of its own, and what
/// is told of files is told in turn. False when that is not told either.
inline bool everythingIsTold() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("witness"));
    const foundation::FileWatch watch(path);
    const QSignalSpy spy(&watch, &foundation::FileWatch::changed);
    write(path, "last");
    const bool told = QTest::qWaitFor([&] { return !spy.isEmpty(); });
    QCoreApplication::processEvents();
    return told;
}

} // namespace kestrin::samples
