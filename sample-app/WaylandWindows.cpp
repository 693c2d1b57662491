#include "sample-app/WaylandWindows.h"

#include <string>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace kestrin::sample {

namespace {

constexpr int width = 320;
constexpr int height = 200;
constexpr int bytesInLine = 4 * width;

} // namespace

class WaylandWindows::Window {
  public:
    Window(WaylandWindows &system, int number, const Options &options)
        : m_system(system)
        , m_number(number)
        , m_surface(wl_compositor_create_surface(system.m_compositor))
        , m_role(xdg_wm_base_get_xdg_surface(system.m_shell, m_surface))
        , m_toplevel(xdg_surface_get_toplevel(m_role)) {
        static const xdg_surface_listener roleListener{.configure = [](void *self, auto *, auto serial) {
            static_cast<Window *>(self)->configured(serial);
        }};
        static const xdg_toplevel_listener toplevelListener = [] {
            xdg_toplevel_listener listener{};
            listener.configure = [](auto...) {};
            listener.close = [](void *self, auto *) {
                const auto &window = *static_cast<Window *>(self);
                window.m_system.m_listener.askedToClose(window.m_number);
            };
            return listener;
        }();
        xdg_surface_add_listener(m_role, &roleListener, this);
        xdg_toplevel_add_listener(m_toplevel, &toplevelListener, this);
        xdg_toplevel_set_title(m_toplevel, options.value("title", "A title that is nobody's name").c_str());
        const std::string name = options.value("class", "sample-app/Sample-app");
        if (name != "none")
            xdg_toplevel_set_app_id(m_toplevel, name.substr(name.find('/') + 1).c_str());
        wl_surface_commit(m_surface);
    }
    Window(const Window &) = delete;
    Window &operator=(const Window &) = delete;
    ~Window() {
        if (m_mapping != nullptr)
            wl_callback_destroy(m_mapping);
        xdg_toplevel_destroy(m_toplevel);
        xdg_surface_destroy(m_role);
        wl_surface_destroy(m_surface);
    }

  private:
    /// The compositor has said how large it is to be, which is as it likes: the picture is always the same.
    void configured(std::uint32_t serial) {
        xdg_surface_ack_configure(m_role, serial);
        if (m_isShown) {
            wl_surface_commit(m_surface);
            return;
        }
        m_isShown = true;
        wl_surface_attach(m_surface, m_system.m_picture, 0, 0);
        wl_surface_damage(m_surface, 0, 0, width, height);
        const auto now = std::chrono::steady_clock::now();
        wl_surface_commit(m_surface);
        // Answered when the compositor has dealt with all that was said before.
        static const wl_callback_listener mappingListener{.done = [](void *self, auto *callback, auto) {
            auto &window = *static_cast<Window *>(self);
            wl_callback_destroy(callback);
            window.m_mapping = nullptr;
            window.m_system.m_listener.mapped(window.m_number);
        }};
        m_mapping = wl_display_sync(m_system.m_display);
        wl_callback_add_listener(m_mapping, &mappingListener, this);
        wl_display_flush(m_system.m_display);
        m_system.m_listener.shown(m_number, now);
    }

    WaylandWindows &m_system;
    const int m_number;
    wl_surface *const m_surface;
    xdg_surface *const m_role;
    xdg_toplevel *const m_toplevel;
    bool m_isShown = false;
    wl_callback *m_mapping = nullptr;
};

WaylandWindows::WaylandWindows(Listener listener)
    : m_listener(std::move(listener))
    , m_display(wl_display_connect(nullptr)) {
    if (m_display == nullptr)
        return;
    static const wl_registry_listener registryListener{
        .global = [](void *self, auto *registry, auto name, const char *interface,
                     auto) { static_cast<WaylandWindows *>(self)->bind(registry, name, interface); },
        .global_remove = [](auto...) {},
    };
    wl_registry *registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(registry, &registryListener, this);
    wl_display_roundtrip(m_display);
    wl_registry_destroy(registry);
    if (m_memory != nullptr)
        m_picture = makePicture();
}

WaylandWindows::~WaylandWindows() {
    if (m_display == nullptr)
        return;
    m_windows.clear();
    const auto leave = [](auto *object, auto destroy) {
        if (object != nullptr)
            destroy(object);
    };
    leave(m_picture, wl_buffer_destroy);
    leave(m_shell, xdg_wm_base_destroy);
    leave(m_memory, wl_shm_destroy);
    leave(m_compositor, wl_compositor_destroy);
    wl_display_flush(m_display);
    wl_display_disconnect(m_display);
}

void WaylandWindows::bind(wl_registry *registry, std::uint32_t name, std::string_view interface) {
    const auto take = [&](auto *&object, const wl_interface &wanted) {
        if (interface == wanted.name)
            object = static_cast<std::remove_reference_t<decltype(object)>>(
                wl_registry_bind(registry, name, &wanted, 1));
    };
    take(m_compositor, wl_compositor_interface);
    take(m_memory, wl_shm_interface);
    take(m_shell, xdg_wm_base_interface);
    if (interface == xdg_wm_base_interface.name) {
        static const xdg_wm_base_listener shellListener{
            .ping = [](void *, auto *shell, auto serial) { xdg_wm_base_pong(shell, serial); }};
        xdg_wm_base_add_listener(m_shell, &shellListener, nullptr);
    }
}

wl_buffer *WaylandWindows::makePicture() {
    constexpr int size = bytesInLine * height;
    const int file = ::memfd_create("sample-app", MFD_CLOEXEC);
    if (file < 0 || ::write(file, std::string(size, '\xff').data(), size) != size)
        return nullptr;
    wl_shm_pool *pool = wl_shm_create_pool(m_memory, file, size);
    ::close(file);
    wl_buffer *picture =
        wl_shm_pool_create_buffer(pool, 0, width, height, bytesInLine, WL_SHM_FORMAT_XRGB8888);
    wl_shm_pool_destroy(pool);
    return picture;
}

bool WaylandWindows::isThere() const {
    return m_display != nullptr && wl_display_get_error(m_display) == 0 && m_compositor != nullptr &&
           m_shell != nullptr && m_picture != nullptr;
}

void WaylandWindows::open(int number, const Options &options) {
    m_windows[number] = std::make_unique<Window>(*this, number, options);
}

void WaylandWindows::close(int number) {
    m_windows.erase(number);
    flush();
}

void WaylandWindows::takeEvents() {
    if (wl_display_prepare_read(m_display) == 0)
        wl_display_read_events(m_display);
    wl_display_dispatch_pending(m_display);
}

} // namespace kestrin::sample
