#include "benchmarks/Run.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace kestrin::bench {

Run::Run(int argc, char **argv)
    : m_isQuick(std::any_of(argv + 1, argv + argc,
                            [](const char *word) { return std::strcmp(word, "--quick") == 0; })) {
    if (std::getenv("KESTRIN_DESKTOP") == nullptr)
        giveUp("this is no desktop of its own; ./bench makes one.");
}

std::string built(const std::string &place) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / place;
}

void giveUp(const std::string &reason) {
    std::fprintf(stderr, "Cannot measure: %s\n", reason.c_str());
    std::exit(1);
}

} // namespace kestrin::bench
