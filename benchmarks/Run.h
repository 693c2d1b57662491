// One run of a benchmark.
#pragma once

#include <string>

namespace kestrin::bench {

/// What main begins with. Outside a desktop of its own (tools/with-desktop) it ends the program, which would
/// meet its user's windows and files there.
class Run {
  public:
    Run(int argc, char **argv);

    /// How much of something, with --quick and without.
    int choose(int quick, int usual) const { return m_isQuick ? quick : usual; }

  private:
    bool m_isQuick;
};

/// A program of the same build, by its place in the build folder.
std::string built(const std::string &place);

/// Ends the program: without what is missing there is nothing to measure.
[[noreturn]] void giveUp(const std::string &reason);

} // namespace kestrin::bench
