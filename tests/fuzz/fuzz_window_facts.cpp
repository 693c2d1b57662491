// Properties of windows: of any type, any format and any length.

#include "desktop/x11/WindowFacts.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/support/Property.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 2)
        return 0;
    constexpr quint8 formats[] = {0, 8, 16, 32};
    const auto type = static_cast<xcb_atom_t>(data[0]);
    const samples::Property property(type, formats[data[1] % 4], bytesOf(data + 2, size - 2));
    constexpr X11Atoms atoms{.wmState = 104};
    xcb_ewmh_connection_t hints{};
    hints._NET_WM_STATE_SKIP_TASKBAR = 65;

    WindowFacts facts;
    facts.takeWindowClass(property.reply());
    facts.takeWindowType(property.reply(), hints);
    facts.takeWindowState(property.reply(), hints);
    const QString text = propertyText(property.reply());
    const auto length = static_cast<qsizetype>(size);
    require(text.size() < length && facts.claims.className.size() < length, "no text comes from nowhere");
    require(!text.contains(u'\0') && !facts.claims.className.contains(u'\0'), "texts end at their NUL");
    require(facts.claims.instanceName == text, "the instance is the first text");
    require(!facts.skipsTaskbar || type == XCB_ATOM_ATOM, "states are atoms");
    require(propertyWindow(property.reply()) == 0 || type == XCB_ATOM_WINDOW, "windows are windows");
    require(!isIconic(property.reply(), atoms) || type == atoms.wmState, "only WM_STATE tells of icons");
    return 0;
}
