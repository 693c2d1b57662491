// Applications with a window each.
#pragma once

#include "tests/support/SampleApp.h"

#include <list>

namespace kestrin::bench {

/// The options of a sample application with one window of that class, with as much about it as windows
/// usually tell.
QString optionsOf(const QString &windowClass);

/// One application for each class. Returns when the window manager lists their windows.
std::list<samples::SampleApp> openWindows(const QStringList &classes);

/// So many classes that nobody knows.
QStringList unknownClasses(int count);

} // namespace kestrin::bench
