// The activity log against the bare system calls that move the same bytes.

#include "benchmarks/Bench.h"
#include "engine/JSONMacActivityLogStore.h"
#include "foundation/PrivateFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

using Kind = MacProtectionEventKind;

/// As much text as the events of an enforcing monitor have.
MacProtectionEvent event(int number) {
    const bool detected = number % 2 == 0;
    return MacProtectionEvent::create(
        QDateTime::currentDateTimeUtc(), detected ? Kind::relaunchDetected : Kind::quitRequested,
        detected ? u"Zoom relaunched while Privacy Mode is on."_s : u"Asked Zoom to quit."_s, u"Zoom"_s,
        u"us.zoom.xos"_s);
}

bool writeLog(const QString &path, int count) {
    QList<MacProtectionEvent> events;
    for (int i = 0; i < count; ++i)
        events.append(event(i));
    const QByteArray text = encodeJson(events);
    return replacePrivateFile(path, {{text.constData(), static_cast<std::size_t>(text.size())}});
}

/// Memory from the system for as long as it lives. A heap that has once been as large would keep it and make
/// the floor of a second call lower than that of the first.
class Buffer {
  public:
    explicit Buffer(std::size_t size)
        : m_size(size)
        , m_memory(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        if (m_memory == MAP_FAILED)
            bench::giveUp("there is not enough memory.");
    }
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;
    ~Buffer() { ::munmap(m_memory, m_size); }

    char *data() const { return static_cast<char *>(m_memory); }
    std::size_t size() const { return m_size; }

  private:
    std::size_t m_size;
    void *m_memory;
};

/// Hands the bytes of a file, in a buffer of their own, to `use`.
template <typename Use>
void bareRead(const char *path, Use use) {
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        bench::giveUp("the log cannot be read.");
    const Buffer buffer(static_cast<std::size_t>(status.st_size));
    if (::read(descriptor, buffer.data(), buffer.size()) != status.st_size)
        bench::giveUp("the log cannot be read.");
    ::close(descriptor);
    use(buffer);
}

void bareReplace(const char *path, const char *temporary) {
    bareRead(path, [&](const Buffer &bytes) {
        const int descriptor = ::open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (descriptor < 0 ||
            ::write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
            ::fsync(descriptor) != 0 || ::close(descriptor) != 0 || ::rename(temporary, path) != 0)
            bench::giveUp("the log cannot be written.");
    });
}

void measure(bench::Report &report, int count, int rounds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"activity-log.json"_s);
    if (!writeLog(path, count))
        bench::giveUp("there is no room for a log.");
    JSONMacActivityLogStore store(QUrl::fromLocalFile(path));
    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporary = name + ".bare";
    const std::string events = std::to_string(count / 1000) + ",000 events";

    int number = 0;
    const auto append = bench::compare(
        rounds, [&] { store.append(event(number++)); },
        [&] { bareReplace(name.constData(), temporary.constData()); });
    report.ratio(("Append to a log of " + events).c_str(), "ms", append, 3);
    if (store.recent(count + rounds + 1).size() != count + rounds + 1)
        bench::giveUp("an append was lost.");

    qsizetype seen = 0;
    std::size_t read = 0;
    const auto recent = bench::compare(
        rounds, [&] { seen += store.recent(8).size(); },
        [&] { bareRead(name.constData(), [&](const Buffer &bytes) { read += bytes.size(); }); });
    report.ratio(("The newest eight of " + events).c_str(), "ms", recent, 2.5);
    if (seen != 8 * (rounds + 1) || read == 0)
        bench::giveUp("the log does not read.");
}

} // namespace

int main(int argc, char **argv) {
    const bool quick = bench::isQuick(argc, argv);
    bench::Report report;
    measure(report, 10'000, quick ? 20 : 100);
    measure(report, 100'000, quick ? 7 : 30);
    return report.exitCode();
}
