// Privacy Mode off for a while, and on again afterwards.
#pragma once

#include "runtime/UserDefaults.h"

#include <QDateTime>

#include <chrono>
#include <optional>

namespace kestrin::runtime {

/// From one second of universal time to another. It is stored beside the flag, which is off meanwhile, as one
/// value; where the flag is on it means nothing.
struct Pause {
    static const QString key;
    static constexpr std::chrono::hours longest{7 * 24};

    QDateTime since;
    QDateTime until;

    friend bool operator==(const Pause &, const Pause &) = default;

    static Pause between(const QDateTime &since, const QDateTime &until);
    /// None where what is stored is no pause.
    static std::optional<Pause> stored(const UserDefaults &defaults);

    /// So it is too where the clock was set back to before it began: how much of it is left nobody can tell.
    bool isOver(const QDateTime &now) const;
    Pause movedBack(std::chrono::seconds by) const;

    [[nodiscard]] foundation::StoreResult store(UserDefaults &defaults) const;
    /// Puts the other one, or none, in its place, unless another process has stored one meanwhile.
    [[nodiscard]] foundation::StoreResult replaceBy(UserDefaults &defaults,
                                                    const std::optional<Pause> &other) const;
};

/// The first moment of the next day in local time, which is not midnight where the clocks leave that out.
QDateTime startOfTomorrow(const QDateTime &now);

} // namespace kestrin::runtime
