// What a compositor, the kernel and the session manager tell of windows and their processes.

#include "desktop/applications/SessionUnit.h"
#include "desktop/wayland/PlasmaWindows.h"
#include "desktop/wayland/SocketPeers.h"
#include "desktop/wayland/WlrToplevels.h"
#include "tests/fuzz/Fuzzing.h"

#include <wayland-util.h>

#include <cstring>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray bytes = bytesOf(data, size);
    const QList<QByteArray> addresses{QByteArray(), "/run/user/1000/wayland-0"};
    SocketPeers peers;
    takeSocketAnswer(bytes, addresses, peers);
    for (auto peer = peers.cbegin(); peer != peers.cend(); ++peer)
        require(addresses.contains(peer.key()) && !peer->contains(0), "peers are those of the addresses");
    inodeOfSocket(bytes);
    unitIdOfControlGroup(bytes);

    wl_argument argument{};
    argument.s = bytes.constData();
    SourceWindow window;
    for (const std::string_view event : {"app_id_changed", "resource_name_changed"})
        PlasmaWindows::read(event, &argument, window);
    WlrToplevels::read("app_id", &argument, window);
    require(window.claims.className.size() <= 1024, "texts are bounded");
    if (size >= sizeof argument.u) {
        std::memcpy(&argument.u, data, sizeof argument.u);
        PlasmaWindows::read("pid_changed", &argument, window);
        require(window.process >= 0, "processes have numbers");
    }
    return 0;
}
