// What a sway that is slow, silent, mad or gone does to whoever asks it. A real one is asked elsewhere.

#include "desktop/sway/SwayTree.h"
#include "desktop/sway/SwayWindows.h"
#include "tests/support/ListeningSocket.h"
#include "tests/support/Test.h"

#include <QElapsedTimer>

#include <poll.h>

#include <cstring>
#include <functional>
#include <thread>

namespace {

const QByteArray oneWindow =
    R"({"nodes":[{"id":5,"pid":77,"app_id":"zoom","name":"secret"}],"floating_nodes":[]})";
const QByteArray launch = R"({"change":"new","container":{"id":6,"pid":78}})";

QByteArray message(quint32 kind, const QByteArray &payload) {
    const quint32 numbers[] = {static_cast<quint32>(payload.size()), kind};
    return "i3-ipc" + QByteArray(reinterpret_cast<const char *>(numbers), sizeof numbers) + payload;
}

constexpr quint32 getTree = 4;
constexpr quint32 windowEvent = 0x80000003;

/// Answers each question with the bytes that `script` has for its kind; the end of a conversation for none.
class FakeSway {
  public:
    using Script = std::function<std::optional<QByteArray>(quint32 kind)>;

    explicit FakeSway(Script script) : m_script(std::move(script)), m_thread([this] { serve(); }) {}
    ~FakeSway() {
        ::shutdown(m_socket.descriptor(), SHUT_RDWR);
        m_thread.join();
    }

    QByteArray path() const { return m_socket.path(); }

  private:
    void serve() {
        int client = -1;
        while ((client = ::accept(m_socket.descriptor(), nullptr, nullptr)) >= 0) {
            char header[14];
            while (isAsked(client) && ::recv(client, header, sizeof header, MSG_WAITALL) == sizeof header) {
                quint32 numbers[2];
                std::memcpy(numbers, header + 6, sizeof numbers);
                QByteArray payload(static_cast<qsizetype>(numbers[0]), '\0');
                if (numbers[0] > 0 && ::recv(client, payload.data(), numbers[0], MSG_WAITALL) <= 0)
                    break;
                const auto answer = m_script(numbers[1]);
                if (!answer || !isSent(client, *answer))
                    break;
            }
            ::close(client);
        }
    }

    /// Or whether it is time to go.
    bool isAsked(int client) const {
        pollfd sockets[] = {{client, POLLIN, 0}, {m_socket.descriptor(), POLLIN, 0}};
        return ::poll(sockets, 2, -1) > 0 && sockets[1].revents == 0;
    }

    static bool isSent(int client, const QByteArray &bytes) {
        return ::send(client, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) ==
               bytes.size();
    }

    const samples::ListeningSocket m_socket;
    const Script m_script;
    std::thread m_thread;
};

} // namespace

class SwayTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    // The sway of these tests is no compositor.
    void initTestCase() { qunsetenv("WAYLAND_DISPLAY"); }
    void trees();
    void conversations();
    void events();
};

void SwayTest::trees() {
    const auto row = [](const QByteArray &json, const QString &expected) {
        const auto windows = windowsOfSwayTree(json);
        QStringList all;
        for (const SourceWindow &window : windows.value_or(QList<SourceWindow>()))
            all.append(u"%1:%2:%3/%4%5"_s.arg(window.id)
                           .arg(window.process)
                           .arg(window.claims.instanceName, window.claims.className,
                                window.isRegular ? QString() : u" hidden"_s));
        QCOMPARE(windows ? all.join(u' ') : u"none"_s, expected);
    };
    row(oneWindow, u"5:77:/zoom"_s);
    const QByteArray x11 = R"("window_properties":{"class":"X","instance":"x","window_type":")";
    row(R"({"floating_nodes":[{"id":1,"pid":7,)" + x11 + R"(normal"}},{"id":2,"pid":8,)" + x11 +
            R"(splash"}}]})",
        u"1:7:x/X 2:8:x/X hidden"_s);
    // Numbers that are no process, and texts that are none.
    row(R"({"nodes":[{"pid":-1},{"pid":0},{"pid":4294967297},{"pid":"7"},{"pid":9,"app_id":5}]})",
        u"0:9:/"_s);
    // A client's own words, in no encoding that anybody knows.
    row("{\"nodes\":[{\"id\":1,\"pid\":7,\"name\":\"\xff\xfe\",\"app_id\":\"a\xff\"}]}", u"1:7:/a\ufffd"_s);
    for (const QByteArray &broken :
         {QByteArray(R"({"nodes":[{"pid":7])"), QByteArray(R"({"nodes":[)").repeated(5000), QByteArray()})
        row(broken, u"none"_s);
}

void SwayTest::conversations() {
    const QByteArray tree = message(getTree, oneWindow);
    // What is answered to the question for the tree.
    const auto row = [](const char *name, const std::optional<QByteArray> &answer, bool isAnswered = false,
                        bool isSlow = false) {
        bool isFirst = true;
        FakeSway sway([&](quint32 kind) -> std::optional<QByteArray> {
            if (kind == getTree && std::exchange(isFirst, false))
                return answer;
            return message(kind, kind == getTree ? oneWindow : R"({"success":true})");
        });
        SwayWindows windows(sway.path());
        QElapsedTimer timer;
        timer.start();
        const std::chrono::milliseconds patience = isSlow ? 300ms : 10s;
        const Deadline deadline(patience);
        QVERIFY2(windows.open(deadline), name);
        QVERIFY2(windows.windows(deadline).has_value() == isAnswered, name);
        QVERIFY2(timer.elapsed() < patience.count() + 700 &&
                     (timer.elapsed() >= patience.count() - 10) == isSlow,
                 name);
        // Whatever it was, the next conversation begins anew.
        QVERIFY2(windows.open(Deadline(1s)) && windows.windows(Deadline(1s)), name);
    };
    row("answers", tree, true);
    row("tells much before", message(windowEvent, launch).repeated(100'000) + tree, true);
    row("says too little", tree.first(20), false, true);
    row("is silent", QByteArray(), false, true);
    row("ends", std::nullopt);
    row("speaks otherwise", QByteArray(1000, 'x'));
    row("announces too much", QByteArray("i3-ipc\xff\xff\xff\xff\4\0\0\0", 14));
    row("tells no tree", message(getTree, "[1,2"));
}

void SwayTest::events() {
    bool ends = false;
    bool hangsUp = false;
    QByteArray news;
    FakeSway sway([&](quint32 kind) -> std::optional<QByteArray> {
        if (ends || std::exchange(hangsUp, false))
            return std::nullopt;
        return message(kind, kind == getTree ? oneWindow : R"([{"success":true}])") + std::exchange(news, {});
    });
    SwayWindows windows(sway.path());
    const auto answers = [&windows] { return windows.windows(Deadline(1s)).has_value(); };
    QSignalSpy changed(&windows, &WindowSource::changed);
    QSignalSpy lost(&windows, &WindowSource::lost);
    QVERIFY(windows.open(Deadline(1s)) && answers());
    // Along with an answer, so that no socket tells of it.
    news = message(windowEvent, R"({"change":"title"})") + message(windowEvent, launch);
    QVERIFY(windows.close({{5, 77, {}, true}}, Deadline(1s)));
    QTRY_COMPARE(changed.count(), 1);
    news = message(windowEvent, R"({"change":"title"})");
    QVERIFY(answers());
    QCoreApplication::processEvents();
    QCOMPARE(changed.count(), 1);
    // As on everybody who is slow to read.
    hangsUp = true;
    QVERIFY(!answers());
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(answers() && lost.isEmpty());
    ends = true;
    QVERIFY(!answers());
    QTRY_COMPARE(lost.count(), 1);
    ends = false;
    QVERIFY(windows.open(Deadline(1s)) && answers());
}

KESTRIN_TEST(SwayTest)
#include "tst_sway.moc"
