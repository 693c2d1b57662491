#pragma once

#include "sample-app/WindowSystem.h"

#include <map>
#include <memory>
#include <string_view>

#include <wayland-client.h>
#include <xdg-shell-client-protocol.h>

namespace kestrin::sample {

/// Of the options of a window it knows the title and the class.
class WaylandWindows final : public WindowSystem {
  public:
    explicit WaylandWindows(Listener listener);
    ~WaylandWindows() override;

    bool isThere() const override;
    int descriptor() const override { return wl_display_get_fd(m_display); }
    void open(int number, const Options &options) override;
    void close(int number) override;
    void flush() override { wl_display_flush(m_display); }
    void takeEvents() override;

  private:
    class Window;

    void bind(wl_registry *registry, std::uint32_t name, std::string_view interface);
    /// One white picture, which all windows show.
    wl_buffer *makePicture();

    const Listener m_listener;
    /// Null when there is no compositor.
    wl_display *const m_display;
    wl_compositor *m_compositor = nullptr;
    wl_shm *m_memory = nullptr;
    xdg_wm_base *m_shell = nullptr;
    wl_buffer *m_picture = nullptr;
    std::map<int, std::unique_ptr<Window>> m_windows;
};

} // namespace kestrin::sample
