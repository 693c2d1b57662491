#include "shared/DomainRecords.h"

#include "foundation/JsonDecoding.h"
#include "foundation/JsonEncoding.h"

namespace kestrin {

template QByteArray encodeJson(const ProtectionDevice &, JsonLayout);
template QByteArray encodeJson(const ModePreset &, JsonLayout);
template std::optional<ProtectionDevice> decodeJson(const QByteArray &);
template std::optional<ModePreset> decodeJson(const QByteArray &);

} // namespace kestrin
