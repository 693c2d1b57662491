// An application whose windows look and behave as a test wants.

#include "sample-app/BusObjects.h"
#include "sample-app/Options.h"
#include "sample-app/WaylandWindows.h"
#include "sample-app/X11Windows.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrin::sample {

namespace {

void say(const char *fact, int number) {
    sample::say(std::string(fact) + ' ' + std::to_string(number));
}

void sayTime(const char *fact, std::chrono::steady_clock::time_point time) {
    sample::say(std::string(fact) + ' ' +
                std::to_string(std::chrono::nanoseconds(time.time_since_epoch()).count()));
}

/// Left mapped until the process ends.
void mapFile(const std::string &path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || ::mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, file, 0) == MAP_FAILED)
        std::fprintf(stderr, "sample-app cannot map %s.\n", path.c_str());
    ::close(file);
}

class SampleApplication {
  public:
    explicit SampleApplication(const Instructions &instructions)
        : m_instructions(instructions)
        , m_takesCommands(instructions.application.has("commands")) {
        // What poll() sees is all that there is.
        std::setvbuf(stdin, nullptr, _IONBF, 0);
        if (BusObjects::isWanted(m_instructions.application))
            m_bus = std::make_unique<BusObjects>(m_instructions.application);
        m_system = makeSystem();
    }

    /// Until the last window has been closed. The process's exit status: 1 without a display, or when it went
    /// away.
    int run() {
        if (!m_system->isThere()) {
            std::fputs("sample-app cannot reach a display.\n", stderr);
            return 1;
        }
        if (m_instructions.application.has("map"))
            mapFile(m_instructions.application.value("map"));
        for (const Options &window : m_instructions.windows) {
            if (!window.has("later"))
                open(window);
        }
        while (!isDone()) {
            wait();
            if (!m_system->isThere())
                return 1;
            m_system->takeEvents();
        }
        m_system->flush();
        return 0;
    }

  private:
    std::unique_ptr<WindowSystem> makeSystem() {
        const WindowSystem::Listener listener{
            .shown = [this](int number, auto when) { shown(number, when); },
            .mapped = [this](int number) { mapped(number); },
            .askedToClose = [this](int number) { askedToClose(number); },
        };
        if (m_instructions.application.has("wayland"))
            return std::make_unique<WaylandWindows>(listener);
        const bool hasActions = m_bus && m_instructions.application.has("gtk");
        return std::make_unique<X11Windows>(listener, hasActions ? m_bus->uniqueName() : "");
    }

    void open(const Options &options) {
        const int number = ++m_lastNumber;
        m_windows[number] = options;
        m_system->open(number, options);
    }

    void close(int number) {
        m_windows.erase(number);
        m_system->close(number);
    }

    void shown(int number, std::chrono::steady_clock::time_point when) {
        if (m_windows[number].has("times"))
            sayTime("shown-at", when);
    }

    void mapped(int number) {
        const Options options = m_windows[number];
        const bool flickers = options.value("manner") == "flickers";
        // Who flickers tells it once, so that it never waits for a reader.
        if (!flickers || number == 1)
            say("mapped", number);
        if (flickers) {
            close(number);
            open(options);
        }
    }

    void askedToClose(int number) {
        Options options = m_windows[number];
        if (options.has("times"))
            sayTime("asked-at", std::chrono::steady_clock::now());
        say("asked", number);
        const std::string manner = options.value("manner");
        if (manner == "asks") {
            options.set("manner", "ignores");
            open(options);
        }
        if (manner == "ignores" || manner == "asks")
            return;
        close(number);
        say("closed", number);
    }

    void takeCommand() {
        std::string command;
        if (std::getline(std::cin, command))
            open(m_instructions.windows.back());
        else
            m_isEnded = true;
    }

    /// For an event or a command.
    void wait() {
        m_system->flush();
        if (m_bus && m_bus->process())
            return;
        // poll() passes over negative ones.
        pollfd sources[] = {{m_system->descriptor(), POLLIN, 0},
                            {m_takesCommands ? STDIN_FILENO : -1, POLLIN, 0},
                            {m_bus ? m_bus->descriptor() : -1, m_bus ? m_bus->events() : short{0}, 0}};
        ::poll(sources, std::size(sources), -1);
        if (sources[1].revents != 0)
            takeCommand();
    }

    bool isDone() const {
        return m_isEnded || (m_bus && m_bus->hasQuit()) || (m_windows.empty() && !m_takesCommands);
    }

    const Instructions m_instructions;
    const bool m_takesCommands;
    /// Null without a bus.
    std::unique_ptr<BusObjects> m_bus;
    std::unique_ptr<WindowSystem> m_system;
    /// By their numbers.
    std::map<int, Options> m_windows;
    int m_lastNumber = 0;
    bool m_isEnded = false;
};

} // namespace

} // namespace kestrin::sample

using namespace kestrin::sample;

int main(int count, char **arguments) {
    return SampleApplication(parseArguments({arguments + 1, arguments + count})).run();
}
