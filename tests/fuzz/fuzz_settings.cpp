// The settings, and the user's own applications.

#include "engine/OwnApplications.h"
#include "engine/PrivacyModeSettings.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonObject>

namespace {

/// Whatever is stored, one more can be added and found, or is refused in words.
void addTo(QList<RiskAppDefinition> own) {
    if (!flawOf(own).isEmpty())
        return;
    const bool isKnown = catalogWith(own).definition({0, QStringLiteral("Notes"), {}, {}}).has_value();
    const bool isFull = own.size() == OwnApplicationLimits::applications;
    require(appendOwn({.name = QStringLiteral("Notes")}, own).isEmpty() == !(isKnown || isFull),
            "what is known is not added");
    require(flawOf(own).isEmpty(), "what is added is no flaw");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = bytesOf(data, size);
    if (const auto catalog = decodeJson<RiskAppCatalog>(text))
        addTo(catalog->definitions);
    const auto settings = decodeJson<PrivacyModeSettings>(text);
    if (!settings)
        return 0;
    require(decodeJson<PrivacyModeSettings>(encodeJson(*settings)) == settings,
            "what is written reads as it was");
    if (const auto document = secondOpinion(text))
        require(document->object().contains(u"isEnabled"_s) || document->object().isEmpty(),
                "nothing that is missing is made up");
    return 0;
}
