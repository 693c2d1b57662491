// What the GNOME shell answers, by whichever extension has our name there. The bus lets nothing through that
// is no message, so these are messages whose types and values are anything.

#include "desktop/gnome/ShellWindowList.h"
#include "tests/fuzz/Fuzzing.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/socket.h>

#include <array>
#include <memory>
#include <string>

namespace {

/// One that waits for its peer for ever, which is enough to write messages.
sd_bus *bus() {
    static sd_bus *const bus = [] {
        sd_bus *made = nullptr;
        std::array<int, 2> ends{};
        require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0 && sd_bus_new(&made) >= 0 &&
                    sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0,
                "there is a bus");
        return made;
    }();
    return bus;
}

void append(sd_bus_message *message, FuzzedDataProvider &data, char type) {
    const auto number = data.ConsumeIntegral<std::uint64_t>();
    const std::string text = data.ConsumeRandomLengthString();
    // What is no text is refused; then there is none. Any other type takes as much of the number as it has.
    if (type != 's')
        sd_bus_message_append_basic(message, type, &number);
    else if (sd_bus_message_append_basic(message, 's', text.c_str()) < 0)
        sd_bus_message_append_basic(message, 's', "");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::string record =
        input.PickValueInArray({"uissssbb", "uissssbb", "uissssb", "uissssbbu", "s", "iuissssb"});
    const std::string contents = '(' + record + ')';
    sd_bus_message *made = nullptr;
    require(sd_bus_message_new_method_call(bus(), &made, "org.example.Shell", "/", "org.example.Shell",
                                           "List") >= 0,
            "there is a message");
    const std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)> message(made,
                                                                                   sd_bus_message_unref);
    qsizetype written = 0;
    if (input.ConsumeBool()) {
        sd_bus_message_open_container(made, 'a', contents.c_str());
        // Some write more windows than anybody has.
        const int times = input.ConsumeBool() ? 1 : 100;
        while (input.remaining_bytes() > 0) {
            const std::vector<char> rest =
                input.ConsumeBytes<char>(input.ConsumeIntegralInRange<std::size_t>(1, 64));
            for (int i = 0; i < times; ++i, ++written) {
                FuzzedDataProvider values(reinterpret_cast<const std::uint8_t *>(rest.data()), rest.size());
                sd_bus_message_open_container(made, 'r', record.c_str());
                for (const char type : record)
                    append(made, values, type);
                sd_bus_message_close_container(made);
            }
        }
        sd_bus_message_close_container(made);
    } else {
        for (const char type : record)
            append(made, input, type);
    }
    require(sd_bus_message_seal(made, 1, 0) >= 0 && sd_bus_message_rewind(made, 1) >= 0, "it can be read");
    const auto windows = windowsOfShell(made);
    require(!windows || windows->size() <= std::min(written, mostShellWindows), "windows are bounded");
    require(record != "uissssbb" || written == 0 ||
                (windows && windows->size() == std::min(written, mostShellWindows)),
            "no window is lost");
    if (!windows)
        return 0;
    for (const SourceWindow &window : *windows)
        require(window.claims.className.size() <= static_cast<qsizetype>(mostShellText), "texts are bounded");
    return 0;
}
