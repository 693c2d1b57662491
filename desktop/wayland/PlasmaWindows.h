#pragma once

#include "desktop/wayland/WaylandWindowSource.h"

namespace kestrin::desktop {

/// The windows of KDE Plasma (org_kde_plasma_window_management). KWin lets those clients see them whose
/// desktop entry asks for it; to others it is as if it did not speak the protocol. It knows the processes of
/// all windows, and lists those of XWayland too.
class PlasmaWindows final : public WaylandWindowSource {
    Q_OBJECT

  public:
    explicit PlasmaWindows(const QByteArray &display = {}) : WaylandWindowSource(display) {}

    static WindowNews read(std::string_view event, const wl_argument *arguments, SourceWindow &window);

  private:
    /// What a client may see is decided when it connects.
    bool asksAgainInTheSameConversation() const override { return false; }
    wl_proxy *bindManager(WaylandConnection &connection, const foundation::Deadline &deadline) override;
    void takeManagerEvent(wl_proxy *manager, std::string_view event, const wl_argument *arguments) override;
    WindowNews takeWindowEvent(std::string_view event, const wl_argument *arguments,
                               SourceWindow &window) const override {
        return read(event, arguments, window);
    }
    void askToClose(wl_proxy *window) override;
    void letGo(wl_proxy *window) override;
};

} // namespace kestrin::desktop
