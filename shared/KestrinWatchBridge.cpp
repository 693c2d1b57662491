#include "shared/KestrinWatchBridge.h"

#include <QDateTime>

#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kestrin::shared {

using namespace foundation;

const QString KestrinWatchBridge::Key::command = u"command"_s;
const QString KestrinWatchBridge::Key::privacyModeOn = u"privacyModeOn"_s;
const QString KestrinWatchBridge::Key::canTogglePrivacyMode = u"canTogglePrivacyMode"_s;
const QString KestrinWatchBridge::Key::protectedAppCount = u"protectedAppCount"_s;
const QString KestrinWatchBridge::Key::checkCount = u"checkCount"_s;
const QString KestrinWatchBridge::Key::statusTitle = u"statusTitle"_s;
const QString KestrinWatchBridge::Key::statusDetail = u"statusDetail"_s;
const QString KestrinWatchBridge::Key::requiresSetup = u"requiresSetup"_s;
const QString KestrinWatchBridge::Key::hapticFeedbackEnabled = u"hapticFeedbackEnabled"_s;
const QString KestrinWatchBridge::Key::timestamp = u"timestamp"_s;

namespace {

/// Finer than QDateTime's milliseconds, so that two messages in a row are rarely stamped alike.
double secondsSince1970() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// The number that a value holds, when it is integral and fits into 64 bits.
std::optional<qint64> exactInteger(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const quint64 number = value.toULongLong();
        if (number > static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return static_cast<qint64>(number);
    }
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = value.toDouble();
        // 2^63 is a double, the largest 64-bit integer is not: the upper bound has to be open.
        if (!(number >= -0x1p63 && number < 0x1p63) || std::trunc(number) != number)
            return std::nullopt;
        return static_cast<qint64>(number);
    }
    default:
        return std::nullopt;
    }
}

} // namespace

QVariantMap KestrinWatchBridge::commandPayload(Command command, std::optional<bool> privacyModeOn) {
    QVariantMap payload{{Key::command, rawValue(command)}, {Key::timestamp, secondsSince1970()}};
    if (privacyModeOn)
        payload.insert(Key::privacyModeOn, *privacyModeOn);
    return payload;
}

QVariantMap KestrinWatchBridge::statePayload(bool privacyModeOn, bool canTogglePrivacyMode,
                                             qint64 protectedAppCount, qint64 checkCount,
                                             const QString &statusTitle, const QString &statusDetail,
                                             bool requiresSetup, bool hapticFeedbackEnabled) {
    return {
        {Key::privacyModeOn, privacyModeOn},
        {Key::canTogglePrivacyMode, canTogglePrivacyMode},
        {Key::protectedAppCount, protectedAppCount},
        {Key::checkCount, checkCount},
        {Key::statusTitle, statusTitle},
        {Key::statusDetail, statusDetail},
        {Key::requiresSetup, requiresSetup},
        {Key::hapticFeedbackEnabled, hapticFeedbackEnabled},
        {Key::timestamp, secondsSince1970()},
    };
}

std::optional<KestrinWatchBridge::Command> KestrinWatchBridge::command(const QVariantMap &from) {
    const QVariant value = from.value(Key::command);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return fromRawValue<Command>(value.toString());
}

bool KestrinWatchBridge::boolean(const QString &key, const QVariantMap &in, bool defaultValue) {
    const std::optional<qint64> number = exactInteger(in.value(key));
    return number == 0 || number == 1 ? *number == 1 : defaultValue;
}

qint64 KestrinWatchBridge::integer(const QString &key, const QVariantMap &in, qint64 defaultValue) {
    const QVariant value = in.value(key);
    // A boolean is a type of its own: a flag is not a count.
    return value.typeId() == QMetaType::Bool ? defaultValue : exactInteger(value).value_or(defaultValue);
}

QString KestrinWatchBridge::string(const QString &key, const QVariantMap &in, const QString &defaultValue) {
    const QVariant value = in.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : defaultValue;
}

} // namespace kestrin::shared
