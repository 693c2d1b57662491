// How long an answer is waited for.
#pragma once

#include <algorithm>
#include <chrono>

namespace kestrin::foundation {

/// A point in time that a whole conversation has to meet, so that a server that has stopped answering costs
/// one wait, however many answers were due.
class Deadline {
  public:
    explicit Deadline(std::chrono::milliseconds patience)
        : m_end(std::chrono::steady_clock::now() + patience) {}

    /// Never negative; rounded up, so that zero means that the time is over.
    std::chrono::milliseconds remaining() const {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(m_end - std::chrono::steady_clock::now());
        return std::max(left, std::chrono::milliseconds::zero());
    }

  private:
    std::chrono::steady_clock::time_point m_end;
};

} // namespace kestrin::foundation
