// What becomes of those who listen when the desktop is heard in another way than before, over sources of the
// test's own and the real windows of an X11 desktop.

#include "desktop/linux/ChosenWorkspace.h"
#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"

#include <utility>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::desktop;
using namespace kestrin::engine;
using foundation::Deadline;
using samples::running;
using samples::SampleApp;

namespace {

/// Processes that nobody has.
constexpr qint32 process(qint32 number) {
    return 5'000'000 + number;
}

QList<qint32> processes(const QList<qint32> &numbers) {
    QList<qint32> all;
    for (const qint32 number : numbers)
        all.append(process(number));
    return all;
}

class FakeSource final : public WindowSource {
  public:
    bool open(const Deadline & /*deadline*/) override {
        m_isOpen = m_isOpen || isThere;
        return m_isOpen;
    }
    bool isOpen() const override { return m_isOpen; }
    std::optional<QList<SourceWindow>> windows(const Deadline & /*deadline*/) override {
        isAsked = isAsked || m_isOpen;
        return m_isOpen ? std::optional(m_windows) : std::nullopt;
    }
    bool close(const QList<SourceWindow> & /*windows*/, const Deadline & /*deadline*/) override {
        return true;
    }

    void show(const QList<qint32> &pids) {
        for (const qint32 pid : pids)
            m_windows.append({static_cast<quint64>(m_windows.size()), pid, {}, true});
        Q_EMIT changed();
    }
    void leave() {
        isThere = m_isOpen = isAsked = false;
        Q_EMIT lost();
    }

    bool isThere = true;
    bool isAsked = false;

  private:
    bool m_isOpen = false;
    QList<SourceWindow> m_windows;
};

/// Two sources, the better one first, and the workspace over them.
struct TwoSources {
    explicit TwoSources(bool needsX11 = false)
        : better(*new FakeSource)
        , other(*new FakeSource)
        , workspace(candidates(needsX11)) {}

    FakeSource &better;
    FakeSource &other;
    ChosenWorkspace workspace;

  private:
    /// `needsX11` is of the other one.
    std::vector<ChosenWorkspace::Candidate> candidates(bool needsX11) const {
        std::vector<ChosenWorkspace::Candidate> all(2);
        all[0].workspace = std::make_unique<SourceWorkspace>(std::unique_ptr<WindowSource>(&better));
        all[1] = {std::make_unique<SourceWorkspace>(std::unique_ptr<WindowSource>(&other)), needsX11};
        return all;
    }
};

} // namespace

class ChosenWorkspaceTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void leadChanges();
    void lossAmongLaunches();
    void windowsOfBothKinds();
};

void ChosenWorkspaceTest::leadChanges() {
    // The one that does not see everything gives way as soon as a better one answers again.
    for (const bool needsX11 : {false, true}) {
        TwoSources desktop(needsX11);
        desktop.better.show(processes({1}));
        desktop.other.show(processes({1, 2}));
        samples::Launches launches(desktop.workspace);
        desktop.better.show(processes({3}));
        desktop.other.show(processes({3, 4}));
        QCOMPARE(launches.pids, processes({3}));

        desktop.better.leave();
        QTRY_VERIFY(desktop.other.isAsked);
        desktop.other.show(processes({5}));
        desktop.better.show(processes({6}));
        QCOMPARE(launches.pids, processes({3, 5}));

        desktop.better.isThere = true;
        if (needsX11)
            QCOMPARE(running(desktop.workspace), processes({1, 3, 6}));
        else
            desktop.other.leave();
        QTRY_VERIFY(desktop.better.isAsked);
        // Not in the middle of what the change has left to do.
        QCoreApplication::processEvents();
        desktop.better.show(processes({7}));
        desktop.other.show(processes({7, 8}));
        QCOMPARE(launches.pids, processes({3, 5, 7}));
    }
}

/// What is done about the first of two launches is how the source's end is found out.
void ChosenWorkspaceTest::lossAmongLaunches() {
    for (const bool isOtherThere : {false, true}) {
        TwoSources desktop;
        desktop.other.isThere = isOtherThere;
        QList<qint32> launched;
        const auto subscription =
            desktop.workspace.subscribeToLaunches([&](const WorkspaceApplication &application) {
                launched.append(application.processIdentifier);
                if (launched.size() == 1)
                    desktop.better.leave();
                running(desktop.workspace);
            });
        desktop.other.show(processes({1, 2}));
        desktop.better.show(processes({1, 2}));
        QTRY_COMPARE(launched, processes({1, 2}));
    }
}

void ChosenWorkspaceTest::windowsOfBothKinds() {
    for (const QString &first : {u"native"_s, u"X11"_s, u"before"_s}) {
        TwoSources desktop(true);
        desktop.better.isThere = false;
        QTRY_COMPARE(running(desktop.workspace), QList<qint32>());
        std::optional<samples::Launches> launches;
        if (first != "before"_L1)
            launches.emplace(desktop.workspace);
        const SampleApp app;
        if (first != "X11"_L1)
            desktop.other.show({app.pid()});
        if (!launches)
            launches.emplace(desktop.workspace);
        QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
        const SampleApp second;
        QTRY_VERIFY(launches->pids.contains(second.pid()));
        if (first == "X11"_L1)
            desktop.other.show({app.pid()});
        const SampleApp last;
        QTRY_VERIFY(launches->pids.contains(last.pid()));
        QList<qint32> expected{second.pid(), last.pid()};
        if (first != "before"_L1)
            expected.prepend(app.pid());
        QCOMPARE(launches->pids, expected);
    }
}

KESTRIN_TEST(ChosenWorkspaceTest)
#include "tst_chosenworkspace.moc"
