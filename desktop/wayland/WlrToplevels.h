#pragma once

#include "desktop/wayland/WaylandWindowSource.h"
#include "desktop/wayland/WindowProcesses.h"

namespace kestrin::desktop {

/// The windows of the many compositors that speak zwlr_foreign_toplevel_manager_v1. It tells no process of a
/// window: that is found out otherwise, or stays 0.
class WlrToplevels final : public WaylandWindowSource {
    Q_OBJECT

  public:
    explicit WlrToplevels(const QByteArray &display = {}) : WaylandWindowSource(display) {}

    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) override;

    static WindowNews read(std::string_view event, const wl_argument *arguments, SourceWindow &window);

  private:
    void begun() override { m_processes.beginAnew(); }
    wl_proxy *bindManager(WaylandConnection &connection, const foundation::Deadline &deadline) override;
    void takeManagerEvent(wl_proxy *manager, std::string_view event, const wl_argument *arguments) override;
    WindowNews takeWindowEvent(std::string_view event, const wl_argument *arguments,
                               SourceWindow &window) const override {
        return read(event, arguments, window);
    }
    void askToClose(wl_proxy *window) override;
    void letGo(wl_proxy *window) override;

    WindowProcesses m_processes;
};

} // namespace kestrin::desktop
