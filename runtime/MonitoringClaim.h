#pragma once

#include "foundation/FileLock.h"
#include "foundation/FileWatch.h"

#include <memory>

namespace kestrin::runtime {

/// The right to watch launches and schedules over one support folder. Only one process has it, so that no
/// application is asked to quit twice, and without it nobody watches. It ends with the object, or with the
/// process, however that ends. Main thread only.
///
/// Somebody may remove the folder, and the claim's file with it. Then it is claimed again at once; when
/// another process was faster, or it cannot be claimed any more, the claim is lost.
class MonitoringClaim : public QObject {
    Q_OBJECT

  public:
    MonitoringClaim(const QString &supportFolder, const QString &program);

    bool isHeld() const { return m_lock.has_value(); }
    /// Who has the claim instead ("kestrinctl watch, process 4123"); absent when nobody does.
    const std::optional<QString> &holder() const { return m_holder; }
    /// Why nothing can be watched, if it is not for a holder, as a sentence.
    QString obstacle() const;
    /// Why it was lost, as a sentence.
    QString lossSentence() const;

    /// Who monitors now, if anybody; our own claim counts too. Where that cannot be told, nobody and the
    /// reason as a sentence.
    static std::optional<QString> currentHolder(const QString &supportFolder, QString &problem);

  Q_SIGNALS:
    /// From now on others may watch, and this process may not. An event loop has to run.
    void lost();

  private:
    void claim();
    void keep();

    const QString m_folder;
    const QString m_program;
    std::optional<foundation::FileLock> m_lock;
    std::optional<QString> m_holder;
    QString m_problem;
    std::unique_ptr<foundation::FileWatch> m_watch;
};

} // namespace kestrin::runtime
