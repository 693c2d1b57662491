// A compositor without a screen that does as a test says.
#pragma once

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

struct wl_client;
struct wl_display;
struct wl_resource;

namespace kestrin::samples {

/// Speaks zwlr_foreign_toplevel_manager_v1 with whoever connects last. It answers on a thread of its own;
/// what a test makes it say goes out at once, and what it was asked is known once the client has had an
/// answer.
class FakeCompositor {
  public:
    explicit FakeCompositor(const QByteArray &socketPath);
    FakeCompositor(const FakeCompositor &) = delete;
    FakeCompositor &operator=(const FakeCompositor &) = delete;
    /// Dies.
    ~FakeCompositor();

    /// While it is, it reads nothing and says nothing.
    void setSilent(bool isSilent) { m_isSilent = isSilent; }
    /// Announces a window; complete unless told otherwise. Its number counts from 0.
    void announce(const QByteArray &appId, bool isComplete = true);
    /// Announces this many, as fast as the client listens.
    void flood(int windows, const QByteArray &appId);
    void tell(int window, const std::function<void(wl_resource *)> &event);
    void endManager();
    /// A message that is none.
    void talkNonsense();

    /// The windows that were asked to close, by their numbers.
    QList<qsizetype> closed();
    /// How many objects of windows the client has not given back.
    qsizetype objects();

    // What libwayland calls.
    void bound(wl_client *client, wl_resource *manager);
    void askedToClose(wl_resource *window);
    void destroyed(wl_resource *window);

  private:
    void serve();
    void announceUnlocked(const QByteArray &appId, bool isComplete);

    std::mutex m_mutex;
    wl_display *m_display;
    wl_client *m_client = nullptr;
    wl_resource *m_manager = nullptr;
    /// Null once given back.
    QList<wl_resource *> m_windows;
    QList<qsizetype> m_closed;
    int m_toFlood = 0;
    QByteArray m_floodId;
    std::atomic_bool m_isSilent = false;
    std::atomic_bool m_isDying = false;
    std::thread m_thread;
};

} // namespace kestrin::samples
