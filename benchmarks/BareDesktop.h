// The windows of the desktop that a benchmark runs on, as directly as they can be had.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::bench {

class BareDesktop {
  public:
    virtual ~BareDesktop() = default;

    /// Of X11, or of sway where there is one. Gives up when it cannot be reached.
    static std::unique_ptr<BareDesktop> ofEnvironment();
    /// What it adds to the name of a measurement.
    static std::string label();

    /// Returns the windows as soon as there are so many.
    virtual std::vector<std::uint64_t> waitForWindows(std::size_t count) = 0;
    /// Reads what an inventory cannot do without; how many bytes that is.
    virtual std::size_t readWindows() = 0;
    virtual void requestClosing(std::uint64_t window) = 0;
};

} // namespace kestrin::bench
