// How much of what runs a workspace can see.
#pragma once

#include <QString>

namespace kestrin::engine {

/// Told to the user wherever he could otherwise believe that he is protected from what nobody sees. The texts
/// are whole sentences, in words for people who do not know how their desktop is built.
struct Sight {
    enum class Extent {
        full,    ///< everything that a task bar shows
        partial, ///< some applications may run unseen
        none,    ///< nothing can be seen
    };
    /// What can be done about it from within the program.
    enum class Help {
        none,
        allow, ///< the desktop lets us see once its user says so
        read,  ///< it takes more than a click, and the manual tells what
    };

    Extent extent = Extent::full;
    /// What cannot be seen, and why; empty when sight is full.
    QString reason;
    /// What to do about it; empty when nothing helps.
    QString remedy;
    Help help = Help::none;

    bool isFull() const { return extent == Extent::full; }
    /// All of it for people; empty when sight is full.
    QString text() const { return remedy.isEmpty() ? reason : reason + u' ' + remedy; }

    bool operator==(const Sight &) const = default;
};

} // namespace kestrin::engine
