#include "foundation/FolderLock.h"

#include "foundation/FileSentences.h"
#include "foundation/LockFile.h"
#include "foundation/PrivateFolder.h"
#include "foundation/Uninterrupted.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::foundation {

namespace {

// Locks of the open file, so that closing another descriptor of it gives nothing back. Where the system has
// none it is the process that holds them.
#ifdef F_OFD_SETLK
constexpr int setLock = F_OFD_SETLK;
constexpr int getLock = F_OFD_GETLK;
#else
constexpr int setLock = F_SETLK;
constexpr int getLock = F_GETLK;
#endif

/// Whoever looks for a place locks this byte, for that moment.
constexpr off_t door = 0;
constexpr off_t firstPlace = 1;

/// Up to the end of all places when there is no length.
struct flock span(short type, off_t start, off_t length = 0) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return lock;
}

int control(int descriptor, int command, struct flock &lock) {
    return uninterrupted([&] { return ::fcntl(descriptor, command, &lock); });
}

bool isTaken(int error) {
    return error == EAGAIN || error == EACCES;
}

/// The places of one lock file.
class Queue {
  public:
    Queue(int descriptor, const Deadline &deadline) : m_descriptor(descriptor), m_deadline(deadline) {}

    /// 0 when it is our turn, otherwise the system's number of what is in the way; ETIMEDOUT for a holder.
    int waitForTurn() {
        if (const int error = enter(); error != 0)
            return error;
        // No length would mean all places.
        return wait([this] {
            return m_place > firstPlace && firstTaken(firstPlace, m_place - firstPlace).has_value();
        });
    }

  private:
    /// Takes the first place behind everybody else.
    int enter() {
        struct flock lock = span(F_WRLCK, door, 1);
        const int error = wait([&] {
            if (control(m_descriptor, setLock, lock) == 0)
                return false;
            m_error = isTaken(errno) ? 0 : errno;
            return true;
        });
        if (error != 0)
            return error;
        m_place = firstPlace;
        while (const auto taken = firstTaken(m_place, 0))
            m_place = *taken + 1;
        struct flock place = span(F_WRLCK, m_place, 1);
        if (m_error == 0 && control(m_descriptor, setLock, place) != 0)
            m_error = errno;
        lock.l_type = F_UNLCK;
        control(m_descriptor, setLock, lock);
        return m_error;
    }

    /// A place that somebody else has in this range.
    std::optional<off_t> firstTaken(off_t start, off_t length) {
        struct flock lock = span(F_WRLCK, start, length);
        if (control(m_descriptor, getLock, lock) != 0) {
            m_error = errno;
            return std::nullopt;
        }
        return lock.l_type == F_UNLCK ? std::nullopt : std::optional(lock.l_start);
    }

    /// Waits while somebody is in the way, in naps, because a blocking wait could not be given up.
    template <typename InTheWay>
    int wait(const InTheWay &isInTheWay) {
        auto nap = std::chrono::microseconds(50);
        while (isInTheWay()) {
            if (m_error != 0)
                return m_error;
            if (m_deadline.remaining() == 0ms)
                return ETIMEDOUT;
            std::this_thread::sleep_for(nap);
            nap = std::min(nap * 2, std::chrono::microseconds(2000));
        }
        return m_error;
    }

    const int m_descriptor;
    const Deadline &m_deadline;
    off_t m_place = firstPlace;
    int m_error = 0;
};

/// File systems without locks have no second process that could wait either.
bool meansNoLocks(int error) {
    return error == EINVAL || error == EOPNOTSUPP || error == ENOSYS;
}

/// Until then this thread does not wait any more, because it has waited in vain.
thread_local Deadline impatience{0ms};

} // namespace

FolderLock::FolderLock(const QString &folder) {
    const QString path = folder + u"/store.lock"_s;
    const bool isPatient = impatience.remaining() == 0ms;
    const Deadline deadline(isPatient ? patience : 0ms);
    while (!isSettled(folder, path, deadline) && deadline.remaining() > 0ms) {
    }
    if (isPatient && !isHeld() && deadline.remaining() == 0ms)
        impatience = Deadline(patience);
}

/// Tries to hold the lock. Whether that has come to an end, good or bad: somebody may remove the folder at
/// any moment, and then there is a new file to be locked.
bool FolderLock::isSettled(const QString &folder, const QString &path, const Deadline &deadline) {
    m_problem.clear();
    if (!makePrivateFolder(QFile::encodeName(folder))) {
        m_problem = describeFailure(folder, u"written"_s, errno);
        return true;
    }
    m_descriptor = openLockFile(path, m_problem);
    if (m_descriptor < 0)
        return QFile::exists(folder);
    const int error = Queue(m_descriptor, deadline).waitForTurn();
    const bool isGone = error == 0 && !isStillAt(path, m_descriptor);
    if (meansNoLocks(error) || (error == 0 && !isGone))
        return true;
    ::close(std::exchange(m_descriptor, -1));
    m_problem = isGone || error == ETIMEDOUT
                    ? u"Another program keeps the files in "_s + folder + u" locked; end it and try again."_s
                    : describeFailure(path, u"locked"_s, error);
    return !isGone;
}

FolderLock::~FolderLock() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace kestrin::foundation
