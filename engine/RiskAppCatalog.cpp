#include "engine/RiskAppCatalog.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::engine {

const QList<RiskAppDefinition> &RiskAppCatalog::defaultDefinitions() {
    using enum MacRiskCategory;
    using enum RiskAppAction;
    static const QList<RiskAppDefinition> list{
        {u"zoom"_s,
         u"Zoom"_s,
         {u"us.zoom.xos"_s},
         {u"zoom.us"_s},
         {videoCall, microphone, camera},
         keepClosed},
        {u"facetime"_s,
         u"FaceTime"_s,
         {u"com.apple.FaceTime"_s},
         {},
         {videoCall, microphone, camera},
         keepClosed},
        {u"teams"_s,
         u"Microsoft Teams"_s,
         {u"com.microsoft.teams"_s, u"com.microsoft.teams2"_s},
         {u"teams"_s},
         {videoCall, microphone, camera},
         keepClosed},
        {u"quicktime"_s,
         u"QuickTime Player"_s,
         {u"com.apple.QuickTimePlayerX"_s},
         {},
         {screenCapture, microphone, camera},
         quit},
        {u"voice-memos"_s, u"Voice Memos"_s, {u"com.apple.VoiceMemos"_s}, {}, {microphone}, quit},
        {u"photo-booth"_s, u"Photo Booth"_s, {u"com.apple.PhotoBooth"_s}, {}, {camera}, quit},
        {u"chrome"_s,
         u"Google Chrome"_s,
         {u"com.google.Chrome"_s},
         {u"chrome"_s},
         {browser, microphone, camera},
         allow},
        {u"safari"_s, u"Safari"_s, {u"com.apple.Safari"_s}, {}, {browser, microphone, camera}, allow},
        {u"wispr-flow"_s,
         u"Wispr Flow"_s,
         {},
         {u"wispr"_s, u"wispr flow"_s},
         {aiTool, microphone},
         keepClosed},
        {u"rewind"_s,
         u"Rewind"_s,
         {u"com.memoryvault.MemoryVault"_s},
         {u"rewind"_s},
         {aiTool, screenCapture, microphone},
         keepClosed},
        {u"macwhisper"_s, u"MacWhisper"_s, {}, {u"macwhisper"_s}, {aiTool, microphone}, quit},
        {u"otter"_s, u"Otter AI"_s, {}, {u"otter"_s, u"otter ai"_s}, {aiTool, microphone}, quit},
    };
    return list;
}

QString normalizedAppName(const QString &name) {
    return name.trimmed().toLower();
}

namespace {

bool matchesByBundle(const RiskAppDefinition &definition, const RunningMacApp &app) {
    return app.bundleIdentifier &&
           definition.bundleIdentifiers.contains(*app.bundleIdentifier, Qt::CaseInsensitive);
}

bool matchesByName(const RiskAppDefinition &definition, const RunningMacApp &app) {
    const QString name = normalizedAppName(app.localizedName);
    return name == normalizedAppName(definition.displayName) ||
           std::any_of(definition.aliases.cbegin(), definition.aliases.cend(),
                       [&](const QString &alias) { return name == normalizedAppName(alias); });
}

} // namespace

std::optional<RiskAppDefinition> RiskAppCatalog::definition(const RunningMacApp &app) const {
    const auto found = std::find_if(definitions.cbegin(), definitions.cend(), [&](const auto &definition) {
        return matchesByBundle(definition, app) || matchesByName(definition, app);
    });
    return found == definitions.cend() ? std::nullopt : std::optional(*found);
}

QList<RiskAppMatch> RiskAppCatalog::matches(const QList<RunningMacApp> &apps) const {
    QList<RiskAppMatch> result;
    for (const RunningMacApp &app : apps) {
        if (const auto found = definition(app))
            result.append({app, *found});
    }
    return result;
}

QSet<QString> defaultDefinitionIDs() {
    QSet<QString> ids;
    for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions())
        ids.insert(definition.id);
    return ids;
}

} // namespace kestrin::engine
