#pragma once

#include "runtime/UserDefaults.h"

#include <memory>

namespace kestrin {

/// The preferences of this user on this platform. The caller owns the object.
std::unique_ptr<UserDefaults> standardUserDefaults();

/// Where a person finds them, for messages: a file, or the name of the platform's own domain.
QString standardUserDefaultsLocation();

} // namespace kestrin
