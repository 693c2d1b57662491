// What a PipeWire server tells of its nodes, and what follows from it. It talks to nobody but /proc.
#pragma once

#include "desktop/live/UseSource.h"

#include <QHash>
#include <QSet>

#include <map>

struct spa_dict;

namespace kestrin::desktop {

/// The objects that the server has announced, as far as they matter here, each by its number. Of every kind
/// there are so many at most, and what comes beyond is left out.
class PipeWireGraph {
  public:
    static constexpr qsizetype maximumObjects = 5000;

    /// As the registry announces them.
    void addClient(quint32 id, const spa_dict &properties);
    void addNode(quint32 id, const spa_dict &properties);
    void addLink(quint32 id, const spa_dict &properties);
    void remove(quint32 id);
    /// What the server tells of a client when it is asked.
    void describeClient(quint32 id, const spa_dict &properties);

    /// The clients who may use a device, of whom only the server knows who they are, and who were not given
    /// out here before. Whoever is behind a client is known from then on that it is described.
    QSet<quint32> takeUndescribedClients();
    /// Whether anything has come or gone that may have changed the uses, since the last time.
    bool takeChange();

    /// Whether it hands on sound, and not pictures alone as beside a PulseAudio.
    bool hasSound() const;
    /// Each once, in the order of the objects.
    QList<SourceUse> uses() const;

  private:
    struct Node {
        /// What whoever reads from it uses; absent where that is nothing of this.
        std::optional<engine::MacRiskCategory> gives;
        /// Itself a device, or made of the server's own accord, and so no reader.
        bool isDevice = false;
        bool isSound = false;
        quint32 client = 0;
        QString name;
    };
    struct Client {
        /// Of whoever connected, as the kernel told the server; 0 when it could not.
        qint32 process = 0;
        QString name;
        bool isAskedFor = false;
        bool isDescribed = false;
        qint32 claimedProcess = 0;
        QString sandboxId;
    };
    struct Link {
        quint32 output = 0;
        quint32 input = 0;
    };

    /// Absent where it is no use.
    std::optional<SourceUse> useOf(const Link &link) const;

    QHash<quint32, Node> m_nodes;
    QHash<quint32, Client> m_clients;
    std::map<quint32, Link> m_links;
    bool m_isChanged = false;
};

} // namespace kestrin::desktop
