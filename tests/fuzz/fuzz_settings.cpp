// The settings.

#include "engine/PrivacyModeSettings.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = bytesOf(data, size);
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
