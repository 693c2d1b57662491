// What shows the windows of a sample application: one class a protocol.
#pragma once

#include "sample-app/Options.h"

#include <chrono>
#include <functional>

namespace kestrin::sample {

/// Windows are known by their numbers. A conversation that cannot be had, or breaks, is told by isThere().
class WindowSystem {
  public:
    /// What it tells, from within takeEvents(), and of a window that is shown at once from within open().
    struct Listener {
        /// Has been told to show it.
        std::function<void(int number, std::chrono::steady_clock::time_point when)> shown;
        std::function<void(int number)> mapped;
        std::function<void(int number)> askedToClose;
    };

    WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;
    virtual ~WindowSystem() = default;

    virtual bool isThere() const = 0;
    virtual int descriptor() const = 0;
    virtual void open(int number, const Options &options) = 0;
    virtual void close(int number) = 0;
    /// To be called before waiting for the descriptor.
    virtual void flush() = 0;
    /// Hands on what has come; does not wait.
    virtual void takeEvents() = 0;
};

} // namespace kestrin::sample
