#include "cli/LiveCommand.h"

#include "cli/HumanOutput.h"
#include "cli/UntilEnded.h"
#include "foundation/JsonEncoding.h"
#include "runtime/LiveUse.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace runtime;

namespace {

class LiveCommand {
  public:
    LiveCommand(CommandSurroundings &surroundings, bool json)
        : m_surroundings(surroundings)
        , m_out(surroundings.out)
        , m_uses(surroundings.deviceUses)
        , m_json(json) {}

    ExitStatus print() {
        if (!isOn())
            return isOff();
        // All questions are one conversation.
        const auto subscription = m_uses.subscribe({});
        if (!seesSomething())
            return ExitStatus::couldNot;
        const QList<DeviceUse> uses = m_uses.uses();
        if (m_json)
            m_out.write(visibleJson(jsonText(toJsonValue(uses), JsonLayout::pretty)));
        else
            m_out.write(usesText(uses, m_surroundings.palette));
        return ExitStatus::done;
    }

    ExitStatus follow() {
        if (!isOn())
            return isOff();
        UntilEnded ended(m_out);
        const QObject listener;
        QObject::connect(&m_surroundings.defaults, &UserDefaults::changed, &listener, [&] {
            if (!isOn())
                ended.end();
        });
        const auto subscription = m_uses.subscribe({
            .began =
                [this](const DeviceUse &use) { tell(u"started"_s, startedSentence(use), use, use.since); },
            .ended =
                [this](const DeviceUse &use) {
                    tell(u"stopped"_s, stoppedSentence(use), use, QDateTime::currentDateTimeUtc());
                },
            .sightChanged = [this] { m_surroundings.say(sightOfUsesText(m_uses.sight())); },
        });
        if (!seesSomething())
            return ExitStatus::couldNot;
        for (const DeviceUse &use : m_uses.uses())
            tell(u"using"_s, goingOnSentence(use), use, use.since);
        ended.run();
        return isOn() ? ExitStatus::done : isOff();
    }

  private:
    bool isOn() const { return LiveUse::isOn(m_surroundings.defaults); }
    ExitStatus isOff() const {
        return m_surroundings.couldNot(u"Live use is switched off; \"kestrinctl live on\" switches it on."_s);
    }

    /// Tells what cannot be seen.
    bool seesSomething() const {
        const Sight sight = m_uses.sight();
        if (!sight.isFull())
            m_surroundings.say(sight.text());
        return sight.extent != Sight::Extent::none;
    }

    /// At once: who reads a line at a time is not kept waiting for the next.
    void tell(const QString &event, const QString &sentence, const DeviceUse &use, const QDateTime &date) {
        if (m_json) {
            QJsonObject object = toJsonValue(use).toObject();
            object.insert(u"event"_s, event);
            object.insert(u"date"_s, toJsonValue(date));
            m_out.write(visibleJson(jsonText(object)) + '\n');
        } else {
            m_out.write(useEventText(date, sentence, m_surroundings.palette));
        }
        if (!m_out.flush())
            QCoreApplication::quit();
    }

    CommandSurroundings &m_surroundings;
    Output &m_out;
    DeviceUses &m_uses;
    const bool m_json;
};

} // namespace

ExitStatus runLive(CommandSurroundings &surroundings, const Invocation &call) {
    LiveCommand command(surroundings, call.json);
    return call.follow ? command.follow() : command.print();
}

} // namespace kestrin::cli
