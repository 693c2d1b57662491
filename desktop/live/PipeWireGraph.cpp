#include "desktop/live/PipeWireGraph.h"

#include "desktop/live/DeviceClients.h"
#include "desktop/wayland/FlatpakInstances.h"

#include <spa/utils/dict.h>

#include <algorithm>
#include <utility>

namespace kestrin::desktop {

using namespace engine;

namespace {

const char *valueOf(const spa_dict &properties, const char *key) {
    return spa_dict_lookup(&properties, key);
}

QByteArrayView textOf(const spa_dict &properties, const char *key) {
    return valueOf(properties, key);
}

quint32 numberOf(const spa_dict &properties, const char *key) {
    return textOf(properties, key).toUInt();
}

/// Sound is told by the class alone. Pictures come from cameras, and from whoever shows a screen.
std::optional<MacRiskCategory> givenBy(const spa_dict &properties) {
    const QByteArrayView kind = textOf(properties, "media.class");
    if (kind.startsWith("Audio/Source") || kind == "Audio/Duplex")
        return MacRiskCategory::microphone;
    if (kind != "Video/Source" && kind != "Video/Source/Virtual" && kind != "Stream/Output/Video")
        return {};
    const bool isCamera =
        textOf(properties, "media.role") == "Camera" || valueOf(properties, "device.id") != nullptr;
    return isCamera ? MacRiskCategory::camera : MacRiskCategory::screenCapture;
}

/// The one that the server's word means: the number that a process in a sandbox has for itself is not the
/// number that it has here.
qint32 processInSandbox(const QString &sandboxId) {
    const QList<FlatpakInstance> running = runningFlatpaks();
    const auto found = std::find_if(running.cbegin(), running.cend(), [&](const FlatpakInstance &instance) {
        return instance.applicationId == sandboxId;
    });
    return found == running.cend() ? 0 : found->process;
}

} // namespace

void PipeWireGraph::addClient(quint32 id, const spa_dict &properties) {
    if (m_clients.size() >= maximumObjects)
        return;
    Client client;
    client.process = claimedProcess(valueOf(properties, "pipewire.sec.pid"));
    client.name = claimedName(valueOf(properties, "application.name"));
    m_clients.insert(id, client);
}

void PipeWireGraph::addNode(quint32 id, const spa_dict &properties) {
    if (m_nodes.size() >= maximumObjects)
        return;
    const QByteArrayView kind = textOf(properties, "media.class");
    const Node node{.gives = givenBy(properties),
                    .isDevice = kind.startsWith("Audio/") || kind.startsWith("Video/"),
                    .isSound = kind.startsWith("Audio/"),
                    .client = numberOf(properties, "client.id"),
                    .name = claimedName(valueOf(properties, "application.name"))};
    // A link may be announced before the nodes at its ends.
    m_isChanged |= node.gives.has_value();
    m_nodes.insert(id, node);
}

void PipeWireGraph::addLink(quint32 id, const spa_dict &properties) {
    if (std::cmp_greater_equal(m_links.size(), maximumObjects))
        return;
    const Link link{numberOf(properties, "link.output.node"), numberOf(properties, "link.input.node")};
    m_links.insert_or_assign(id, link);
    m_isChanged |= m_nodes.value(link.output).gives.has_value();
}

void PipeWireGraph::remove(quint32 id) {
    if (const auto link = m_links.find(id); link != m_links.end()) {
        m_isChanged |= m_nodes.value(link->second.output).gives.has_value();
        m_links.erase(link);
        return;
    }
    m_isChanged |= m_nodes.take(id).gives.has_value();
    m_clients.remove(id);
}

void PipeWireGraph::describeClient(quint32 id, const spa_dict &properties) {
    const auto client = m_clients.find(id);
    if (client == m_clients.end())
        return;
    client->isDescribed = true;
    client->claimedProcess = claimedProcess(valueOf(properties, "application.process.id"));
    client->sandboxId = claimedName(valueOf(properties, "pipewire.access.portal.app_id"));
    if (const QString name = claimedName(valueOf(properties, "application.name")); !name.isEmpty())
        client->name = name;
    m_isChanged = true;
}

QSet<quint32> PipeWireGraph::takeUndescribedClients() {
    QSet<quint32> undescribed;
    for (const auto &[id, link] : m_links) {
        if (!m_nodes.value(link.output).gives)
            continue;
        const quint32 reader = m_nodes.value(link.input).client;
        const auto client = m_clients.find(reader);
        if (client == m_clients.end() || client->isAskedFor)
            continue;
        client->isAskedFor = true;
        if (client->process == 0 || isDeviceServer(client->process))
            undescribed.insert(reader);
    }
    return undescribed;
}

bool PipeWireGraph::takeChange() {
    return std::exchange(m_isChanged, false);
}

bool PipeWireGraph::hasSound() const {
    return std::any_of(m_nodes.cbegin(), m_nodes.cend(), [](const Node &node) { return node.isSound; });
}

std::optional<SourceUse> PipeWireGraph::useOf(const Link &link) const {
    const auto giver = m_nodes.constFind(link.output);
    const auto reader = m_nodes.constFind(link.input);
    if (giver == m_nodes.cend() || !giver->gives || reader == m_nodes.cend() || reader->isDevice)
        return {};
    const auto client = m_clients.constFind(reader->client);
    if (client == m_clients.cend())
        return {};
    SourceUse use{.category = *giver->gives,
                  .process = client->process,
                  .claimedName = reader->name.isEmpty() ? client->name : reader->name,
                  .sandboxId = {}};
    // Whoever connected for somebody else, as the portal and the server of PulseAudio's clients do, vouches
    // for the sandbox. All the rest is only what the client says.
    if (client->process == 0 || isDeviceServer(client->process)) {
        use.process = client->sandboxId.isEmpty() ? 0 : processInSandbox(client->sandboxId);
        if (use.process != 0)
            use.sandboxId = client->sandboxId;
        else
            use.process = client->claimedProcess;
    }
    return mayUseDevices(use.process) ? std::optional(use) : std::nullopt;
}

QList<SourceUse> PipeWireGraph::uses() const {
    QList<SourceUse> uses;
    for (const auto &[id, link] : m_links) {
        const std::optional<SourceUse> use = useOf(link);
        if (use && !uses.contains(*use))
            uses.append(*use);
    }
    return uses;
}

} // namespace kestrin::desktop
