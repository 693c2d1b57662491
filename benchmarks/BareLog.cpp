#include "benchmarks/BareLog.h"

#include "benchmarks/Run.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrin::bench {

BareLog::BareLog(const QString &path)
    : m_path(QFile::encodeName(path))
    , m_folder(QFile::encodeName(QFileInfo(path).path())) {}

void BareLog::readIntoNewMemory() {
    forget();
    readIntoKnownMemory();
}

void BareLog::readIntoKnownMemory() {
    const int descriptor = ::open(m_path.constData(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        giveUp("the log cannot be read.");
    m_size = static_cast<std::size_t>(status.st_size);
    reserve();
    if (::read(descriptor, m_memory, m_size) != status.st_size)
        giveUp("the log cannot be read.");
    ::close(descriptor);
}

void BareLog::replace() {
    readIntoKnownMemory();
    const int descriptor =
        ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0 || ::write(descriptor, m_memory, m_size) != static_cast<ssize_t>(m_size) ||
        ::fsync(descriptor) != 0 || ::close(descriptor) != 0 ||
        ::rename(m_temporary.constData(), m_path.constData()) != 0)
        giveUp("the log cannot be written.");
    const int folder = ::open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 || ::fsync(folder) != 0 || ::close(folder) != 0)
        giveUp("the log's folder cannot be written.");
}

void BareLog::reserve() {
    if (m_size <= m_capacity)
        return;
    forget();
    // Some room for a log that grows from round to round.
    m_capacity = m_size + 1024 * 1024;
    m_memory = ::mmap(nullptr, m_capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (m_memory == MAP_FAILED)
        giveUp("there is not enough memory.");
}

void BareLog::forget() {
    if (m_capacity > 0)
        ::munmap(m_memory, m_capacity);
    m_capacity = 0;
}

} // namespace kestrin::bench
