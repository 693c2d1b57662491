// The settings decoder.

#include "engine/PrivacyModeSettings.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::fuzzing;

namespace {

/// The settings that Qt finds in a text.
std::optional<PrivacyModeSettings> settingsIn(const QJsonObject &object) {
    const QJsonValue enabled = object.value("isEnabled"_L1);
    const QJsonArray ids = object.value("protectedDefinitionIDs"_L1).toArray();
    if (!enabled.isBool() || !object.value("protectedDefinitionIDs"_L1).isArray())
        return std::nullopt;
    PrivacyModeSettings settings{enabled.toBool(), {}};
    for (const QJsonValue id : ids) {
        if (!id.isString())
            return std::nullopt;
        settings.protectedDefinitionIDs.insert(id.toString());
    }
    return settings;
}

/// Whether Qt is as strict about the text as we are: no escapes, no control characters, nothing beyond ASCII,
/// and no numbers, of which it reads some that are none (".5").
bool isPlain(const QByteArray &text) {
    return std::all_of(text.cbegin(), text.cend(),
                       [](char c) { return c >= ' ' && c <= '~' && c != '\\' && (c < '0' || c > '9'); });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = bytesOf(data, size);
    const auto settings = decodeJson<PrivacyModeSettings>(text);
    if (settings) {
        for (const JsonLayout layout : {JsonLayout::compact, JsonLayout::pretty})
            require(decodeJson<PrivacyModeSettings>(encodeJson(*settings, layout)) == settings,
                    "what is written reads as it was");
        if (const auto document = secondOpinion(text))
            require(settingsIn(document->object()) == settings, "Qt reads the same settings");
    } else if (isPlain(text)) {
        require(!settingsIn(QJsonDocument::fromJson(text).object()), "Qt finds no settings either");
    }
    return 0;
}
