#pragma once

#include "shared/ProtectionTone.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::design {

/// QML knows the tones as `KestrinTone.Protected` and so on.
namespace tones {
Q_NAMESPACE
QML_NAMED_ELEMENT(KestrinTone)

/// The meaning of a status, independent of any colour. KestrinColors has the colours.
enum class KestrinTone {
    Protected,
    Attention,
    Risk,
    Link,
    Neutral,
};
Q_ENUM_NS(KestrinTone)

} // namespace tones

using tones::KestrinTone;

/// The tone that shows the tone of a shared record.
constexpr KestrinTone toneFor(shared::ProtectionTone tone) {
    switch (tone) {
    case shared::ProtectionTone::protected_:
        return KestrinTone::Protected;
    case shared::ProtectionTone::attention:
        return KestrinTone::Attention;
    case shared::ProtectionTone::risk:
        return KestrinTone::Risk;
    case shared::ProtectionTone::link:
        return KestrinTone::Link;
    case shared::ProtectionTone::neutral:
        break;
    }
    return KestrinTone::Neutral;
}

} // namespace kestrin::design
