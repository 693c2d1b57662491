// The activity log against the bare system calls that move the same bytes.

#include "benchmarks/Bench.h"
#include "benchmarks/SampleLog.h"
#include "engine/JSONMacActivityLogStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;

namespace {

/// The bytes of a file, read in one go into memory that is already there or into new memory.
class BareRead {
  public:
    explicit BareRead(const char *path) : m_path(path) {}
    BareRead(const BareRead &) = delete;
    BareRead &operator=(const BareRead &) = delete;
    ~BareRead() { forget(); }

    /// What a program that wants to look at the file needs at the least, whenever it does.
    void intoNewMemory() {
        forget();
        intoKnownMemory();
    }

    /// As little as reading can cost. A program would have to keep as much memory as the log is long for it.
    void intoKnownMemory() {
        const int descriptor = ::open(m_path, O_RDONLY | O_CLOEXEC);
        struct stat status {};
        if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
            bench::giveUp("the log cannot be read.");
        m_size = static_cast<std::size_t>(status.st_size);
        reserve();
        if (::read(descriptor, m_memory, m_size) != status.st_size)
            bench::giveUp("the log cannot be read.");
        ::close(descriptor);
    }

    /// The file that was read, written anew in its place.
    void replace(const char *temporary) const {
        const int descriptor = ::open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (descriptor < 0 || ::write(descriptor, m_memory, m_size) != static_cast<ssize_t>(m_size) ||
            ::fsync(descriptor) != 0 || ::close(descriptor) != 0 || ::rename(temporary, m_path) != 0)
            bench::giveUp("the log cannot be written.");
    }

  private:
    void reserve() {
        if (m_size <= m_capacity)
            return;
        forget();
        // Some room for a log that grows from round to round.
        m_capacity = m_size + 1024 * 1024;
        m_memory = ::mmap(nullptr, m_capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_memory == MAP_FAILED)
            bench::giveUp("there is not enough memory.");
    }

    void forget() {
        if (m_capacity > 0)
            ::munmap(m_memory, m_capacity);
        m_capacity = 0;
    }

    const char *m_path;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
    void *m_memory = nullptr;
};

void measure(bench::Report &report, int count, int rounds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"activity-log.json"_s);
    bench::writeLog(path, count);
    JSONMacActivityLogStore store(QUrl::fromLocalFile(path));
    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporary = name + ".bare";
    const std::string events = std::to_string(count / 1000) + ",000 events";

    BareRead bare(name.constData());
    int number = 0;
    const auto append = bench::compare(
        rounds, [&] { store.append(bench::sampleEvent(number++)); },
        [&] {
            bare.intoKnownMemory();
            bare.replace(temporary.constData());
        });
    report.ratio(("Append to a log of " + events).c_str(), "ms", append, 3);
    if (store.recent(count + rounds + 1).size() != count + rounds + 1)
        bench::giveUp("an append was lost.");

    const auto recent = [&] {
        if (store.recent(8).size() != 8)
            bench::giveUp("the log does not read.");
    };
    const std::string newest = "Newest eight of " + events;
    report.ratio(newest.c_str(), "ms", bench::compare(rounds, recent, [&] { bare.intoNewMemory(); }), 2.5);
    report.note((newest + ", memory kept").c_str(), "ms",
                bench::compare(rounds, recent, [&] { bare.intoKnownMemory(); }));
}

} // namespace

int main(int argc, char **argv) {
    const bool quick = bench::isQuick(argc, argv);
    bench::Report report;
    measure(report, 10'000, quick ? 20 : 100);
    measure(report, 100'000, quick ? 7 : 30);
    return report.exitCode();
}
