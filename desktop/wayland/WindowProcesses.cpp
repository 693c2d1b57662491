#include "desktop/wayland/WindowProcesses.h"

#include "desktop/applications/ProcessIdentity.h"
#include "desktop/applications/SessionUnit.h"
#include "desktop/bus/BusNames.h"
#include "desktop/wayland/FlatpakInstances.h"
#include "desktop/wayland/SocketPeers.h"
#include "desktop/wayland/WaylandConnection.h"
#include "foundation/FileReading.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

/// How long a client may take from its first word to its first window.
constexpr std::chrono::seconds startingTime{60};
/// What the members of the bus may cost one look at the windows.
constexpr std::chrono::milliseconds namesPatience{200};

MatchCandidate candidateOf(qint32 process) {
    const ProcessIdentity identity = ProcessIdentity::of(process);
    const QByteArray folder = "/proc/" + QByteArray::number(process);
    MatchCandidate candidate;
    candidate.process = process;
    candidate.sandboxId = identity.sandboxId;
    candidate.unitId = unitIdOfControlGroup(fileHead(folder + "/cgroup"));
    candidate.executable = identity.executablePath.value_or(QString());
    candidate.commandName = QString::fromUtf8(fileHead(folder + "/comm").trimmed());
    return candidate;
}

/// Where a program is that is looked for by its name, as a shell would find it.
QString pathOfProgram(const QString &program) {
    if (program.isEmpty() || program.startsWith(u'/'))
        return program;
    for (const QByteArray &folder : qgetenv("PATH").split(':')) {
        const QString path = QFile::decodeName(folder) + u'/' + program;
        if (folder.startsWith('/') && QFileInfo(path).isExecutable())
            return path;
    }
    return {};
}

bool mayBeBusName(const QString &appId) {
    const auto isAllowed = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'.' || c == u'_' || c == u'-';
    };
    return appId.contains(u'.') && !appId.startsWith(u'.') && !appId.endsWith(u'.') &&
           !appId.contains(".."_L1) && appId.size() <= 255 &&
           std::all_of(appId.cbegin(), appId.cend(), isAllowed);
}

} // namespace

void WindowProcesses::beginAnew() {
    m_known.clear();
    m_clients.clear();
    m_seen.clear();
    m_hasBegun = false;
}

void WindowProcesses::forgetTheGone(const QList<SourceWindow> &windows) {
    m_known.removeIf([&windows](const auto &known) {
        const auto isIt = [&known](const SourceWindow &window) { return window.id == known.key(); };
        return std::none_of(windows.cbegin(), windows.cend(), isIt) ||
               startOfProcess(known.value().number) != known.value().start;
    });
}

QSet<quint64> WindowProcesses::noteWindows(const QList<SourceWindow> &windows) {
    QSet<quint64> now;
    for (const SourceWindow &window : windows)
        now.insert(window.id);
    return now - std::exchange(m_seen, now);
}

void WindowProcesses::fillIn(QList<SourceWindow> &windows, const WaylandConnection &connection,
                             const Deadline &deadline) {
    const QList<QByteArray> x11 = X11WindowClasses::socketAddresses();
    const SocketPeers peers = peersOfSockets(QList<QByteArray>{connection.address()} + x11);
    QList<qint32> clients = m_owners.of(peers.value(connection.address()));
    clients.removeOne(connection.compositor());
    const bool isOnX11 = std::any_of(x11.cbegin(), x11.cend(),
                                     [&peers](const QByteArray &address) { return peers.contains(address); });

    const Time firstSeen = m_hasBegun ? std::chrono::steady_clock::now() : Time();
    m_hasBegun = true;
    m_clients.removeIf([&clients](const auto &client) { return !clients.contains(client.key()); });
    for (const qint32 client : std::as_const(clients)) {
        if (!m_clients.contains(client))
            m_clients.insert(client, firstSeen);
    }

    forgetTheGone(windows);
    const QSet<quint64> newWindows = noteWindows(windows);
    QStringList open;
    for (SourceWindow &window : windows) {
        const auto known = m_known.constFind(window.id);
        if (known != m_known.cend())
            window.process = known->number;
        else if (!open.contains(window.claims.className))
            open.append(window.claims.className);
    }
    if (open.isEmpty())
        return;

    m_entries.refresh();
    QStringList names;
    std::copy_if(open.cbegin(), open.cend(), std::back_inserter(names), mayBeBusName);
    const QHash<QString, qint32> busOwners =
        BusNames::owners(names, Deadline(std::min(deadline.remaining(), namesPatience)));
    QList<MatchCandidate> all = candidates(clients, isOnX11, deadline);
    for (const QString &appId : std::as_const(open)) {
        MatchQuestion question = questionAbout(appId);
        question.busOwner = busOwners.value(appId);
        question.windows =
            std::count_if(windows.cbegin(), windows.cend(),
                          [&appId](const SourceWindow &window) { return window.claims.className == appId; });
        for (SourceWindow &window : windows) {
            if (window.process != 0 || window.claims.className != appId)
                continue;
            judge(all, appId, windows);
            question.isNew = newWindows.contains(window.id);
            window.process = matchingProcess(question, all);
            if (window.process != 0)
                m_known.insert(window.id, {window.process, startOfProcess(window.process)});
        }
    }
}

QList<MatchCandidate> WindowProcesses::candidates(const QList<qint32> &clients, bool isOnX11,
                                                  const Deadline &deadline) {
    QList<MatchCandidate> all;
    for (const qint32 client : clients) {
        if (MatchCandidate candidate = candidateOf(client); !candidate.executable.endsWith("/Xwayland"_L1))
            all.append(std::move(candidate));
    }
    for (const FlatpakInstance &instance : runningFlatpaks()) {
        const auto isIt = [&instance](const MatchCandidate &candidate) {
            return candidate.sandboxId == instance.applicationId;
        };
        if (std::none_of(all.cbegin(), all.cend(), isIt))
            all.append(candidateOf(instance.process));
    }
    const QHash<qint32, QStringList> onX11 =
        isOnX11 ? m_x11.byProcess(deadline) : QHash<qint32, QStringList>();
    for (auto it = onX11.cbegin(); it != onX11.cend(); ++it) {
        const auto isIt = [&it](const MatchCandidate &candidate) { return candidate.process == it.key(); };
        auto known = std::find_if(all.begin(), all.end(), isIt);
        if (known == all.end()) {
            all.append(candidateOf(it.key()));
            all.last().isNative = false;
            known = std::prev(all.end());
        }
        known->windowClasses = it.value();
    }
    return all;
}

bool WindowProcesses::isNewClient(qint32 process) const {
    const auto client = m_clients.constFind(process);
    if (client != m_clients.cend())
        return std::chrono::steady_clock::now() - *client < startingTime;
    // Clients of the X server, and sandboxes, are not looked at each time.
    static const auto ticksASecond = static_cast<quint64>(::sysconf(_SC_CLK_TCK));
    return ticksNow() - startOfProcess(process) < static_cast<quint64>(startingTime.count()) * ticksASecond;
}

void WindowProcesses::judge(QList<MatchCandidate> &candidates, const QString &appId,
                            const QList<SourceWindow> &windows) const {
    for (MatchCandidate &candidate : candidates) {
        bool hasWindows = false;
        candidate.hasSuchWindows = false;
        for (const SourceWindow &window : windows) {
            if (window.process != candidate.process)
                continue;
            hasWindows = true;
            candidate.hasSuchWindows = candidate.hasSuchWindows || window.claims.className == appId;
        }
        candidate.isNew = !hasWindows && isNewClient(candidate.process);
    }
}

MatchQuestion WindowProcesses::questionAbout(const QString &appId) {
    MatchQuestion question;
    question.appId = appId;
    auto entry = m_entries.withId(appId);
    if (!entry)
        entry = m_entries.withWindowClass(appId);
    if (!entry)
        return question;
    question.entryId = entry->id;
    question.program = pathOfProgram(entry->entry.program);
    question.resolvedProgram = QFileInfo(question.program).canonicalFilePath();
    return question;
}

} // namespace kestrin::desktop
