// What sway tells of its windows, which hand their own words on.

#include "desktop/sway/SwayTree.h"
#include "tests/fuzz/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray json = bytesOf(data, size);
    if (const auto windows = windowsOfSwayTree(json)) {
        require(windows->size() <= mostSwayWindows, "windows are bounded");
        for (const SourceWindow &window : *windows)
            require(window.process > 0, "windows have a process");
    }
    mayBeSwayLaunch(json);
    isSwayCommandDone(json);
    return 0;
}
