// Events of the log as texts, for programs and for people.
#pragma once

#include "engine/MacProtectionEvent.h"
#include "runtime/LogFormat.h"

#include <functional>

namespace kestrin::runtime {

/// Puts parts of a line for people into colours.
struct LogLinePaint {
    std::function<QString(const QString &)> time = [](const QString &text) { return text; };
    std::function<QString(const QString &)> message = [](const QString &text) { return text; };
};

/// What stands in front of the first event, and one event, which is a line. Characters that could forge lines
/// are spelled out.
QByteArray headingOf(LogFormat format);
QByteArray lineOf(const engine::MacProtectionEvent &event, LogFormat format, const LogLinePaint &paint = {});

/// So many events as a whole text, in the order in which `eventAt` tells them.
QByteArray logText(qsizetype count, const std::function<engine::MacProtectionEvent(qsizetype)> &eventAt,
                   LogFormat format);

} // namespace kestrin::runtime
