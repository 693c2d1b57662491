// Programs as child processes.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace kestrin::bench {

using Arguments = std::vector<std::string>;

/// Runs a program to its end with its output thrown away. Gives up when it does not end with 0.
void run(const Arguments &arguments);

/// Milliseconds for which a process has had a processor, in steps of 10.
double processorTimeOf(pid_t process);

/// A program that runs until this goes. Its output is thrown away.
class Child {
  public:
    /// By thread id.
    using WakeUps = std::map<int, long long>;

    enum class Readiness {
        says,      ///< it writes something to standard error when it is ready
        isStarted, ///< it says nothing
    };

    /// Returns once the program is ready.
    explicit Child(const Arguments &arguments, Readiness readiness = Readiness::says);
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child();

    pid_t id() const { return m_process; }
    /// How often each of its threads has been woken so far.
    WakeUps wakeUps() const;
    /// How often any of them has been since. One that has ended since counts as woken once, for its end.
    long long wakeUpsSince(const WakeUps &before) const;
    double processorTime() const { return processorTimeOf(m_process); }
    /// Megabytes.
    double residentMemory() const;
    /// Megabytes that nothing on the disk stands for, and that no other program changes by coming or going.
    double ownMemory() const;
    /// Megabytes of it and of all that it has started. What several processes share is divided among them.
    double proportionalMemory() const;

  private:
    pid_t m_process = -1;
    int m_errors = -1;
};

} // namespace kestrin::bench
