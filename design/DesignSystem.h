#pragma once

namespace kestrin {

/// Makes the QML module KestrinDesignSystem known to all QML engines of the process. Call it before the first
/// of them loads something.
void registerDesignSystem();

} // namespace kestrin
