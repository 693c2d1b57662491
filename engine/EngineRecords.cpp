// The JSON forms of the engine's records, compiled once. The log has a reader of its own
// (ActivityLogFile.cpp).

#include "engine/MacProtectionEvent.h"
#include "engine/PrivacyModeRunResult.h"
#include "engine/PrivacyModeSettings.h"
#include "engine/RiskAppActionResult.h"
#include "engine/RiskAppCatalog.h"
#include "foundation/JsonDecoding.h"
#include "foundation/JsonEncoding.h"

namespace kestrin::foundation {

using namespace engine;

template QByteArray encodeJson(const QList<MacProtectionEvent> &, JsonLayout);
template QByteArray encodeJson(const QList<RunningMacApp> &, JsonLayout);

#define KESTRIN_JSON_RECORD(Record)                                                                          \
    template QByteArray encodeJson(const Record &, JsonLayout);                                              \
    template std::optional<Record> decodeJson(const QByteArray &);

KESTRIN_JSON_RECORD(MacProtectionEvent)
KESTRIN_JSON_RECORD(PrivacyModeRunResult)
KESTRIN_JSON_RECORD(PrivacyModeSettings)
KESTRIN_JSON_RECORD(RiskAppActionResult)
KESTRIN_JSON_RECORD(RiskAppCatalog)
KESTRIN_JSON_RECORD(RiskAppDefinition)
KESTRIN_JSON_RECORD(RiskAppMatch)
KESTRIN_JSON_RECORD(RunningMacApp)

#undef KESTRIN_JSON_RECORD

} // namespace kestrin::foundation
