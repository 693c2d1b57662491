#include "shared/DomainRecords.h"

#include "foundation/JsonDecoding.h"
#include "foundation/JsonEncoding.h"

namespace kestrin::foundation {

using namespace shared;

#define KESTRIN_JSON_RECORD(Record)                                                                          \
    template QByteArray encodeJson(const Record &, JsonLayout);                                              \
    template std::optional<Record> decodeJson(const QByteArray &);

KESTRIN_JSON_RECORD(ActivityEvent)
KESTRIN_JSON_RECORD(ModePreset)
KESTRIN_JSON_RECORD(ProtectedApp)
KESTRIN_JSON_RECORD(ProtectionDevice)

#undef KESTRIN_JSON_RECORD

} // namespace kestrin::foundation
