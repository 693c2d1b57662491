#include "engine/live/DeviceUse.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

namespace {

QString sentence(const DeviceUse &use, const QString &verb) {
    return use.localizedName + u' ' + verb + u" using the "_s + deviceName(use.category) + u'.';
}

/// How messages about a use end, behind the application's name.
QList<std::pair<QString, MacRiskCategory>> endsOfMessages() {
    using enum MacRiskCategory;
    QList<std::pair<QString, MacRiskCategory>> ends;
    for (const MacRiskCategory category : {microphone, camera, screenCapture}) {
        const DeviceUse nameless{category, 0, {}, {}, {}};
        for (const QString &end :
             {startedSentence(nameless), goingOnSentence(nameless), stoppedSentence(nameless)})
            ends += {end, category};
    }
    return ends;
}

} // namespace

QString deviceName(MacRiskCategory category) {
    return category == MacRiskCategory::microphone ? u"microphone"_s
           : category == MacRiskCategory::camera   ? u"camera"_s
                                                   : u"screen"_s;
}

QString startedSentence(const DeviceUse &use) {
    return sentence(use, u"started"_s);
}

QString goingOnSentence(const DeviceUse &use) {
    return sentence(use, u"is"_s);
}

QString stoppedSentence(const DeviceUse &use) {
    return sentence(use, u"stopped"_s);
}

std::optional<MacRiskCategory> usedCategory(const MacProtectionEvent &event) {
    static const auto ends = endsOfMessages();
    if (event.kind != MacProtectionEventKind::riskAppMatched || !event.appName ||
        !event.message.startsWith(*event.appName))
        return std::nullopt;
    const auto end = QStringView(event.message).sliced(event.appName->size());
    for (const auto &[known, category] : ends) {
        if (end == known)
            return category;
    }
    return std::nullopt;
}

} // namespace kestrin::engine
