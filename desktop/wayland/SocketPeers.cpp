#include "desktop/wayland/SocketPeers.h"

#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <linux/unix_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <optional>

namespace kestrin::desktop {

namespace {

/// The next structure in the bytes, which it is cut off from.
template <typename Structure>
std::optional<Structure> takeStructure(QByteArrayView &bytes) {
    Structure structure;
    if (bytes.size() < static_cast<qsizetype>(sizeof structure))
        return std::nullopt;
    std::memcpy(&structure, bytes.data(), sizeof structure);
    bytes = bytes.sliced(sizeof structure);
    return structure;
}

/// Messages and attributes begin at multiples of four, and tell their length with their head.
template <typename Head>
std::optional<std::pair<Head, QByteArrayView>> takePart(QByteArrayView &bytes,
                                                        quint32 (*lengthOf)(const Head &)) {
    QByteArrayView rest = bytes;
    const std::optional<Head> head = takeStructure<Head>(rest);
    if (!head || lengthOf(*head) < sizeof(Head) || lengthOf(*head) > bytes.size())
        return std::nullopt;
    const auto length = static_cast<qsizetype>(lengthOf(*head));
    const QByteArrayView body = bytes.sliced(sizeof(Head), length - static_cast<qsizetype>(sizeof(Head)));
    bytes = bytes.sliced(std::min((length + 3) & ~qsizetype{3}, bytes.size()));
    return std::pair(*head, body);
}

void takeSocket(QByteArrayView message, const QList<QByteArray> &addresses, SocketPeers &peers) {
    if (!takeStructure<unix_diag_msg>(message))
        return;
    QByteArrayView address;
    quint32 peer = 0;
    const auto lengthOf = [](const nlattr &head) -> quint32 { return head.nla_len; };
    while (const auto attribute = takePart<nlattr>(message, lengthOf)) {
        QByteArrayView value = attribute->second;
        if (attribute->first.nla_type == UNIX_DIAG_NAME)
            address = value;
        else if (attribute->first.nla_type == UNIX_DIAG_PEER)
            peer = takeStructure<quint32>(value).value_or(0);
    }
    // Paths may come with their NUL.
    while (address.endsWith('\0'))
        address.chop(1);
    const QByteArray key = address.toByteArray();
    if (peer != 0 && addresses.contains(key))
        peers[key].insert(peer);
}

struct Question {
    nlmsghdr head;
    unix_diag_req body;
};

Question questionAboutConnections() {
    Question question{};
    question.head.nlmsg_len = sizeof question;
    question.head.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    question.head.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.body.sdiag_family = AF_UNIX;
    constexpr quint32 established = 1;
    question.body.udiag_states = 1U << established;
    question.body.udiag_show = UDIAG_SHOW_NAME | UDIAG_SHOW_PEER;
    return question;
}

} // namespace

bool takeSocketAnswer(QByteArrayView answer, const QList<QByteArray> &addresses, SocketPeers &peers) {
    const auto lengthOf = [](const nlmsghdr &head) -> quint32 { return head.nlmsg_len; };
    while (const auto message = takePart<nlmsghdr>(answer, lengthOf)) {
        if (message->first.nlmsg_type != SOCK_DIAG_BY_FAMILY)
            return false;
        takeSocket(message->second, addresses, peers);
    }
    // What is left was not understood.
    return answer.isEmpty();
}

SocketPeers peersOfSockets(const QList<QByteArray> &addresses) {
    SocketPeers peers;
    const int kernel = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (kernel < 0)
        return peers;
    // The kernel answers at once, or there is no answer.
    const timeval patience{0, 200'000};
    ::setsockopt(kernel, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const Question question = questionAboutConnections();
    QByteArray answer(32 * 1024, Qt::Uninitialized);
    ssize_t length = ::send(kernel, &question, sizeof question, 0);
    while (length > 0) {
        length = ::recv(kernel, answer.data(), static_cast<std::size_t>(answer.size()), 0);
        if (length <= 0 || !takeSocketAnswer(QByteArrayView(answer).first(length), addresses, peers))
            break;
    }
    ::close(kernel);
    return peers;
}

quint32 inodeOfSocket(QByteArrayView name) {
    constexpr QByteArrayView prefix("socket:[");
    if (!name.startsWith(prefix) || !name.endsWith(']'))
        return 0;
    return name.sliced(prefix.size()).chopped(1).toByteArray().toUInt();
}

} // namespace kestrin::desktop
