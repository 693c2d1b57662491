#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/RawValues.h"

namespace kestrin::engine {

/// How a request to quit went. A platform answers `requested` or `failed`; the others are for other
/// performers.
enum class RiskAppActionStatus {
    dryRun,
    requested,
    failed,
    unsupported,
};

constexpr auto rawValuesOf(RiskAppActionStatus) {
    using enum RiskAppActionStatus;
    return std::array{
        foundation::RawValue{dryRun, "dryRun"},
        foundation::RawValue{requested, "requested"},
        foundation::RawValue{failed, "failed"},
        foundation::RawValue{unsupported, "unsupported"},
    };
}

/// The outcome of one request, with a complete sentence for the user and the log.
struct RiskAppActionResult {
    RiskAppActionStatus status = RiskAppActionStatus::failed;
    QString message;

    bool operator==(const RiskAppActionResult &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("status", &RiskAppActionResult::status),
            foundation::jsonField("message", &RiskAppActionResult::message),
        };
    }
};

} // namespace kestrin::engine
