#include "benchmarks/Child.h"

#include "benchmarks/Run.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace kestrin::bench {

namespace {

/// Starts a program whose standard error goes to `errors`, or nowhere when that is -1.
pid_t spawn(const Arguments &arguments, int errors) {
    std::vector<char *> words;
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (errors >= 0)
        ::posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    else
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    if (::posix_spawnp(&process, words[0], &actions, nullptr, words.data(), environ) != 0)
        giveUp(arguments[0] + " cannot be started.");
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
}

/// The number behind a word in a file of /proc.
long long number(const std::filesystem::path &path, const std::string &word) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(word))
            return std::stoll(line.substr(word.size()));
    }
    giveUp(path.string() + " does not tell " + word);
}

std::filesystem::path ofProcess(pid_t process) {
    return "/proc/" + std::to_string(process);
}

std::filesystem::directory_iterator threads(pid_t process) {
    return std::filesystem::directory_iterator(ofProcess(process) / "task");
}

long long proportionalKilobytes(pid_t process) {
    long long sum = number(ofProcess(process) / "smaps_rollup", "Pss:");
    for (const auto &thread : threads(process)) {
        std::ifstream children(thread.path() / "children");
        for (pid_t child = 0; children >> child;)
            sum += proportionalKilobytes(child);
    }
    return sum;
}

} // namespace

void run(const Arguments &arguments) {
    int status = -1;
    if (::waitpid(spawn(arguments, -1), &status, 0) < 0 || status != 0)
        giveUp(arguments[0] + " fails.");
}

double processorTimeOf(pid_t process) {
    std::ifstream file(ofProcess(process) / "stat");
    std::string text;
    std::getline(file, text);
    // Behind the name, which may hold anything, the two are the 12th and the 13th.
    std::istringstream rest(text.substr(text.rfind(')') + 1));
    std::string word;
    for (int skipped = 0; skipped < 11; ++skipped)
        rest >> word;
    long long user = 0;
    long long system = 0;
    rest >> user >> system;
    return 1000.0 * static_cast<double>(user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

Child::Child(const Arguments &arguments, Readiness readiness) {
    if (readiness == Readiness::isStarted) {
        m_process = spawn(arguments, -1);
        return;
    }
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        giveUp("there are no more pipes.");
    m_process = spawn(arguments, ends[1]);
    ::close(ends[1]);
    m_errors = ends[0];
    pollfd said{m_errors, POLLIN, 0};
    if (::poll(&said, 1, 10'000) != 1 || (said.revents & POLLIN) == 0)
        giveUp(arguments[0] + " does not get ready.");
}

Child::~Child() {
    ::kill(m_process, SIGTERM);
    ::waitpid(m_process, nullptr, 0);
    if (m_errors >= 0)
        ::close(m_errors);
}

Child::WakeUps Child::wakeUps() const {
    WakeUps counts;
    for (const auto &thread : threads(m_process))
        counts[std::stoi(thread.path().filename())] =
            number(thread.path() / "status", "voluntary_ctxt_switches:");
    return counts;
}

long long Child::wakeUpsSince(const WakeUps &before) const {
    long long sum = 0;
    const WakeUps now = wakeUps();
    for (const auto &[thread, count] : now)
        sum += before.contains(thread) ? count - before.at(thread) : count;
    return sum + std::count_if(before.begin(), before.end(),
                               [&now](const auto &known) { return !now.contains(known.first); });
}

double Child::residentMemory() const {
    return static_cast<double>(number(ofProcess(m_process) / "status", "VmRSS:")) / 1024;
}

double Child::ownMemory() const {
    const auto status = ofProcess(m_process) / "status";
    return static_cast<double>(number(status, "RssAnon:") + number(status, "RssShmem:")) / 1024;
}

double Child::proportionalMemory() const {
    return static_cast<double>(proportionalKilobytes(m_process)) / 1024;
}

} // namespace kestrin::bench
