// Small X clients: processes that open one window with a class of their choice, close when they are asked to,
// and end with the benchmark in any case.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kestrin::bench {

/// What a client tells once its window was asked to close; times of the steady clock in nanoseconds.
struct ClosingTimes {
    long long mapped = 0;
    long long askedToClose = 0;
};

enum class Closing {
    awaits,   ///< waits to be asked
    requests, ///< asks the window manager itself, as soon as that lists the window
};

class SampleClient {
  public:
    explicit SampleClient(const std::string &windowClass, Closing closing = Closing::awaits);
    SampleClient(SampleClient &&other) noexcept;
    SampleClient(const SampleClient &) = delete;
    SampleClient &operator=(const SampleClient &) = delete;
    /// Ends the process.
    ~SampleClient();

    pid_t process() const { return m_process; }
    /// Becomes readable when the window was asked to close, or the client has ended.
    int descriptor() const { return m_times; }
    /// Waits for the window to be asked to close. The client ends by itself then.
    ClosingTimes times();

  private:
    pid_t m_process = -1;
    int m_times = -1;
};

/// Waits until the window manager lists so many windows.
void waitForWindows(std::size_t count);

/// As many clients, each with a window that the window manager lists.
std::vector<SampleClient> openWindows(std::size_t count, const std::string &windowClass);

} // namespace kestrin::bench
