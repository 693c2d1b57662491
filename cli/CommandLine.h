// From the words of a call to what is asked for.
#pragma once

#include "cli/CommandTable.h"
#include "engine/OwnApplications.h"
#include "runtime/LogFormat.h"
#include "runtime/LogQuery.h"

#include <functional>
#include <optional>
#include <variant>

namespace kestrin::cli {

/// What `log` is asked for.
struct LogRequest {
    /// Without its times, which depend on when the call is carried out.
    runtime::LogQuery query;
    /// Phrases that timeOfPhrase() understands; empty where nothing was said.
    QString since;
    QString until;
    std::optional<qsizetype> limit;
    runtime::LogFormat format = runtime::LogFormat::text;
};

/// A call that can be carried out: every word of it has been checked.
struct Invocation {
    enum class Action { run, help, version };

    Action action = Action::run;
    /// Null only for the help and the version of the whole program.
    const CommandDescription *command = nullptr;
    /// What `catalog` does.
    enum class CatalogVerb { list, add, remove, candidates };

    /// The identifiers of `protect`, `unprotect`, `schedule` and `catalog remove`, in the order given and
    /// each once.
    QStringList ids;
    /// What `live`, `enforce`, `schedule`, `autostart` or `desktop` switches to; absent when nothing is to be
    /// changed.
    std::optional<bool> enable;
    CatalogVerb catalogVerb = CatalogVerb::list;
    /// Without a name where one that runs is to be added.
    engine::OwnApplication application;
    /// The process or the name of that one.
    QString running;
    /// Until when Privacy Mode is paused, for endOfPhrase().
    QString pauseEnd;
    bool json = false;
    bool preview = false;
    bool follow = false;
    LogRequest log;
};

/// One sentence that says what was wrong and names what is accepted.
struct UsageError {
    QString sentence;
};

/// `arguments` are the words behind the program's name. Looks at nothing but the words, and at the ids that
/// the user's own applications have, where they could be meant.
std::variant<Invocation, UsageError> parseCommandLine(const QStringList &arguments,
                                                      const std::function<QStringList()> &ownIDs);

} // namespace kestrin::cli
