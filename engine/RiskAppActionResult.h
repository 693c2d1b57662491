#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/RawValues.h"

namespace kestrin {

/// How a request to quit went. A platform answers `requested` or `failed`; the others are for other
/// performers.
enum class RiskAppActionStatus {
    dryRun,
    requested,
    failed,
    unsupported,
};

template <>
struct RawValues<RiskAppActionStatus> {
    static constexpr std::array entries{
        RawValue{RiskAppActionStatus::dryRun, "dryRun"},
        RawValue{RiskAppActionStatus::requested, "requested"},
        RawValue{RiskAppActionStatus::failed, "failed"},
        RawValue{RiskAppActionStatus::unsupported, "unsupported"},
    };
};

/// The outcome of one request, with a complete sentence for the user and the log.
struct RiskAppActionResult {
    RiskAppActionStatus status = RiskAppActionStatus::failed;
    QString message;

    bool operator==(const RiskAppActionResult &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            jsonField("status", &RiskAppActionResult::status),
            jsonField("message", &RiskAppActionResult::message),
        };
    }
};

} // namespace kestrin
