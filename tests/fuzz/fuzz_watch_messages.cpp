// Messages of a watch, with values of every type under known and unknown keys.

#include "shared/KestrinWatchBridge.h"
#include "tests/fuzz/Fuzzing.h"

#include <QStringList>

#include <bit>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::fuzzing;

namespace {

using Bridge = KestrinWatchBridge;

QString text(FuzzedDataProvider &input) {
    return input.ConsumeBool() ? rawValue(Bridge::Command::quickCheck) : anyText(input, 24);
}

QVariant anyValue(FuzzedDataProvider &input) {
    switch (input.ConsumeIntegralInRange(0, 7)) {
    case 0:
        return input.ConsumeBool();
    case 1:
        return input.ConsumeIntegral<qint32>();
    case 2:
        return QVariant::fromValue(input.ConsumeIntegral<qint64>());
    case 3:
        return QVariant::fromValue(input.ConsumeIntegral<quint64>());
    case 4: // of every kind, those that are no numbers included
        return std::bit_cast<double>(input.ConsumeIntegral<quint64>());
    case 5:
        return text(input).toUtf8();
    case 6:
        return text(input);
    default:
        return {};
    }
}

void checkValue(const QString &key, const QVariantMap &message) {
    const QVariant value = message.value(key);
    const bool isText = value.typeId() == QMetaType::QString;
    const bool isNumber = !isText && value.typeId() != QMetaType::QByteArray && value.canConvert<double>();
    const bool flag = Bridge::boolean(key, message, true);
    if (flag == Bridge::boolean(key, message, false))
        require(isNumber && value.toDouble() == (flag ? 1 : 0), "a boolean is exactly 0 or 1");
    const qint64 count = Bridge::integer(key, message, 1);
    if (count == Bridge::integer(key, message, 2))
        require(isNumber && value.typeId() != QMetaType::Bool &&
                    value.toDouble() == static_cast<double>(count),
                "an integer is what the number says");
    require(Bridge::string(key, message, u"default"_s) == (isText ? value.toString() : u"default"_s),
            "only text is text");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const QStringList keys{Bridge::Key::command, Bridge::Key::privacyModeOn, Bridge::Key::protectedAppCount,
                           u"unknown"_s};
    QVariantMap message;
    while (input.remaining_bytes() > 0)
        message.insert(keys.at(input.ConsumeIntegralInRange<qsizetype>(0, keys.size() - 1)), anyValue(input));
    for (const QString &key : keys)
        checkValue(key, message);
    if (const auto command = Bridge::command(message))
        require(message.value(Bridge::Key::command) == QVariant(rawValue(*command)),
                "a command is its raw value");
    return 0;
}
