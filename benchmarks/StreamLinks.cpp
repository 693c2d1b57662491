#include "benchmarks/StreamLinks.h"

#include "benchmarks/Run.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <cstring>
#include <map>

// Before its version 1.4 the library's functions were macros that cast in C's way, and are made of
// expressions that only GCC has and Clang has taken over.
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"

namespace kestrin::bench {

namespace {

std::string valueOf(const spa_dict &properties, const char *key) {
    const char *const value = spa_dict_lookup(&properties, key);
    return value ? value : "";
}

} // namespace

class StreamLinks::Session {
  public:
    Session(std::string microphone, const std::vector<std::string> &streams)
        : m_microphone(std::move(microphone))
        , m_streams(streams)
        , m_links(streams.size(), nullptr) {
        pw_init(nullptr, nullptr);
        m_loop = pw_loop_new(nullptr);
        pw_loop_enter(m_loop);
        m_context = pw_context_new(m_loop, nullptr, 0);
        m_core = pw_context_connect(m_context, nullptr, 0);
        if (!m_core)
            giveUp("there is no PipeWire.");
        m_registry = pw_core_get_registry(m_core, PW_VERSION_REGISTRY, 0);
        static const pw_registry_events events = [] {
            pw_registry_events handlers{};
            handlers.version = PW_VERSION_REGISTRY_EVENTS;
            handlers.global = [](void *self, std::uint32_t id, std::uint32_t, const char *type, std::uint32_t,
                                 const spa_dict *properties) {
                if (properties)
                    static_cast<Session *>(self)->take(id, type, *properties);
            };
            return handlers;
        }();
        pw_registry_add_listener(m_registry, &m_listener, &events, this);
    }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session() {
        spa_hook_remove(&m_listener);
        pw_proxy_destroy(reinterpret_cast<pw_proxy *>(m_registry));
        pw_core_disconnect(m_core);
        pw_context_destroy(m_context);
        pw_loop_leave(m_loop);
        pw_loop_destroy(m_loop);
    }

    bool isComplete() const {
        return m_ports.contains(m_microphone) &&
               std::all_of(m_streams.begin(), m_streams.end(),
                           [this](const std::string &stream) { return m_ports.contains(stream); });
    }

    void setLinked(std::size_t stream, bool isLinked) {
        pw_proxy *&link = m_links.at(stream);
        if ((link != nullptr) == isLinked)
            return;
        if (!isLinked) {
            pw_proxy_destroy(link);
            link = nullptr;
            return;
        }
        const std::string output = std::to_string(m_ports.at(m_microphone));
        const std::string input = std::to_string(m_ports.at(m_streams.at(stream)));
        const spa_dict_item items[] = {{PW_KEY_LINK_OUTPUT_PORT, output.c_str()},
                                       {PW_KEY_LINK_INPUT_PORT, input.c_str()}};
        const spa_dict properties{0, 2, items};
        link = static_cast<pw_proxy *>(pw_core_create_object(m_core, "link-factory", PW_TYPE_INTERFACE_Link,
                                                             PW_VERSION_LINK, &properties, 0));
    }

    void runFor(std::chrono::milliseconds time) {
        using Clock = std::chrono::steady_clock;
        const auto end = Clock::now() + time;
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            pw_loop_iterate(m_loop, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
            if (left.count() <= 0)
                return;
        }
    }

  private:
    void take(std::uint32_t id, const char *type, const spa_dict &properties) {
        if (std::strcmp(type, PW_TYPE_INTERFACE_Node) == 0) {
            m_nodes[std::to_string(id)] = valueOf(properties, PW_KEY_NODE_NAME);
            return;
        }
        if (std::strcmp(type, PW_TYPE_INTERFACE_Port) != 0)
            return;
        const std::string node = m_nodes[valueOf(properties, PW_KEY_NODE_ID)];
        if ((valueOf(properties, PW_KEY_PORT_DIRECTION) == "out") == (node == m_microphone))
            m_ports.emplace(node, id);
    }

    const std::string m_microphone;
    const std::vector<std::string> m_streams;
    pw_loop *m_loop = nullptr;
    pw_context *m_context = nullptr;
    pw_core *m_core = nullptr;
    pw_registry *m_registry = nullptr;
    spa_hook m_listener{};
    std::map<std::string, std::string> m_nodes;
    /// The first that can be linked, by the node.
    std::map<std::string, std::uint32_t> m_ports;
    std::vector<pw_proxy *> m_links;
};

StreamLinks::StreamLinks(const std::string &microphone, const std::vector<std::string> &streams)
    : m_session(std::make_unique<Session>(microphone, streams)) {
    for (int tries = 0; !m_session->isComplete(); ++tries) {
        if (tries == 200)
            giveUp("the streams do not come.");
        m_session->runFor(std::chrono::milliseconds(50));
    }
}

StreamLinks::~StreamLinks() = default;

void StreamLinks::setLinked(std::size_t stream, bool isLinked) {
    m_session->setLinked(stream, isLinked);
}

void StreamLinks::runFor(std::chrono::milliseconds time) {
    m_session->runFor(time);
}

} // namespace kestrin::bench
