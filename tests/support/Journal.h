// Doubles that write down, in one list, what is asked of them and in which order.
#pragma once

#include "engine/PrivacyModeSettingsStoring.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "foundation/Clock.h"
#include "tests/support/Samples.h"

#include <optional>
#include <utility>

namespace kestrin::samples {

/// "list", "ask 10", and "watched by 1" with the number of those who watch launches.
class JournalWorkspace final : public engine::InMemoryWorkspace {
  public:
    explicit JournalWorkspace(QStringList &journal) : m_journal(journal) {}

    QList<engine::WorkspaceApplication> runningApplications() override {
        m_journal.append(u"list"_s);
        const auto listed = InMemoryWorkspace::runningApplications();
        if (arriving)
            add(*std::exchange(arriving, std::nullopt));
        return listed;
    }
    [[nodiscard]] engine::Termination terminate(qint32 processIdentifier) override {
        m_journal.append(u"ask "_s + QString::number(processIdentifier));
        return InMemoryWorkspace::terminate(processIdentifier);
    }
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    subscribeToLaunches(LaunchHandler handler) override {
        auto subscription = InMemoryWorkspace::subscribeToLaunches(std::move(handler));
        m_journal.append(u"watched by "_s + QString::number(subscriberCount()));
        return subscription;
    }

    /// Runs after the next listing.
    std::optional<engine::WorkspaceApplication> arriving;

  private:
    QStringList &m_journal;
};

/// "load", "save on 12" with the size of the selection.
class JournalSettings final : public engine::InMemoryPrivacyModeSettingsStore {
  public:
    JournalSettings(QStringList &journal, const engine::PrivacyModeSettings &initial)
        : InMemoryPrivacyModeSettingsStore(initial)
        , m_journal(journal) {}

    engine::PrivacyModeSettings load() override {
        m_journal.append(u"load"_s);
        return settings;
    }
    [[nodiscard]] foundation::StoreResult update(const Change &change) override {
        change(settings, true);
        m_journal.append(u"save %1 %2"_s.arg(settings.isEnabled ? u"on"_s : u"off"_s)
                             .arg(settings.protectedDefinitionIDs.size()));
        return {};
    }

  private:
    QStringList &m_journal;
};

/// "log" and the message, "read 8" with the limit.
class JournalLog final : public engine::InMemoryMacActivityLogStore {
  public:
    explicit JournalLog(QStringList &journal) : m_journal(journal) {}

    [[nodiscard]] foundation::StoreResult tryAppend(const engine::MacProtectionEvent &event) override {
        m_journal.append(u"log "_s + event.message);
        return InMemoryMacActivityLogStore::tryAppend(event);
    }
    QList<engine::MacProtectionEvent> recent(qsizetype limit) override {
        m_journal.append(u"read "_s + QString::number(limit));
        return InMemoryMacActivityLogStore::recent(limit);
    }

  private:
    QStringList &m_journal;
};

/// All of them over one journal. Nothing is selected, and it is noon and a second later at every look at the
/// clock.
struct Journaled {
    QStringList journal;
    JournalWorkspace workspace{journal};
    std::shared_ptr<JournalSettings> settings =
        std::make_shared<JournalSettings>(journal, engine::PrivacyModeSettings{true, {}});
    std::shared_ptr<JournalLog> log = std::make_shared<JournalLog>(journal);
    QDateTime now{QDate(2026, 3, 14), QTime(12, 0)};
    const foundation::Clock clock = [this] { return now = now.addSecs(1); };

    /// What was asked since one last looked.
    QStringList asked() { return std::exchange(journal, {}); }
};

} // namespace kestrin::samples
