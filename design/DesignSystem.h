#pragma once

namespace kestrin::design {

/// Makes the QML module KestrinDesignSystem known to all QML engines of the process. Call it before the first
/// of them loads something.
void registerDesignSystem();

} // namespace kestrin::design
