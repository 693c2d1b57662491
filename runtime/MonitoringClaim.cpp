#include "runtime/MonitoringClaim.h"

#include "foundation/FileSentences.h"
#include "foundation/PrivateFolder.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::runtime {

using namespace foundation;

namespace {

QString lockPath(const QString &supportFolder) {
    return supportFolder + u"/monitor.lock"_s;
}

} // namespace

MonitoringClaim::MonitoringClaim(const QString &supportFolder, const QString &program)
    : m_folder(supportFolder)
    , m_program(program) {
    claim();
    if (!isHeld())
        return;
    m_watch = std::make_unique<FileWatch>(lockPath(m_folder));
    connect(m_watch.get(), &FileWatch::changed, this, &MonitoringClaim::keep);
    // It may have been removed before it was watched.
    keep();
}

void MonitoringClaim::claim() {
    const QString note = m_program + u", process "_s + QString::number(QCoreApplication::applicationPid());
    m_lock.reset();
    m_holder.reset();
    // Who only asks for the holder is in the way for an instant, and is gone when one looks who it was; so is
    // who removes the folder.
    for (int attempt = 0; attempt < 5 && !m_lock && !m_holder; ++attempt) {
        if (attempt > 0)
            std::this_thread::sleep_for(10ms);
        m_problem.clear();
        if (!makePrivateFolder(QFile::encodeName(m_folder))) {
            m_problem = describeFailure(m_folder, u"written"_s, errno);
            continue;
        }
        m_lock = FileLock::tryLockFile(lockPath(m_folder), note.toUtf8(), m_problem);
        if (m_lock && !m_lock->isAt(lockPath(m_folder)))
            m_lock.reset();
        if (!m_lock && m_problem.isEmpty())
            m_holder = currentHolder(m_folder, m_problem);
    }
}

void MonitoringClaim::keep() {
    const bool wasHeld = isHeld();
    // The watch has to know each new file, or it would not tell that this one is gone too.
    while (m_lock && !m_lock->isAt(lockPath(m_folder))) {
        claim();
        m_watch->acknowledge();
    }
    if (wasHeld && !isHeld())
        Q_EMIT lost();
}

QString MonitoringClaim::obstacle() const {
    return u"Nothing can be watched: "_s +
           (m_problem.isEmpty() ? m_folder + u" is claimed by other programs again and again; end them."_s
                                : m_problem);
}

QString MonitoringClaim::lossSentence() const {
    return m_holder
               ? u"Privacy Mode is watched by "_s + *m_holder + u" now, so it is not watched here any more."_s
               : obstacle();
}

std::optional<QString> MonitoringClaim::currentHolder(const QString &supportFolder, QString &problem) {
    const std::optional<QByteArray> note = FileLock::holderOf(lockPath(supportFolder), problem);
    if (!note)
        return std::nullopt;
    return note->isEmpty() ? u"another program"_s : QString::fromUtf8(*note).trimmed();
}

} // namespace kestrin::runtime
