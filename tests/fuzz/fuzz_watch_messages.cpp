// Messages of a watch, with values of every type under known and unknown keys.

#include "shared/KestrinWatchBridge.h"
#include "tests/fuzz/Fuzzing.h"

#include <QStringList>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::fuzzing;

namespace {

using Bridge = KestrinWatchBridge;

const QStringList &keys() {
    static const QStringList list{Bridge::Key::command,           Bridge::Key::privacyModeOn,
                                  Bridge::Key::protectedAppCount, Bridge::Key::statusTitle,
                                  Bridge::Key::timestamp,         u"unknown"_s};
    return list;
}

template <typename Number>
QVariant number(FuzzedDataProvider &input) {
    const bool small = input.ConsumeBool();
    return QVariant::fromValue(small ? static_cast<Number>(input.ConsumeIntegralInRange(0, 2))
                                     : input.ConsumeIntegral<Number>());
}

QString text(FuzzedDataProvider &input) {
    if (input.ConsumeBool())
        return rawValue(input.PickValueInArray(
            {Bridge::Command::requestState, Bridge::Command::setPrivacyMode, Bridge::Command::quickCheck}));
    return anyText(input, 24);
}

/// Doubles of every kind, those that are no numbers included.
double real(FuzzedDataProvider &input) {
    const auto bits = input.ConsumeIntegral<quint64>();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return input.ConsumeBool() ? value : static_cast<double>(static_cast<qint64>(bits));
}

using Maker = QVariant (*)(FuzzedDataProvider &);

constexpr Maker makers[] = {
    [](FuzzedDataProvider &input) { return QVariant(input.ConsumeBool()); },
    number<qint32>,
    number<quint32>,
    number<qint64>,
    number<quint64>,
    number<short>,
    [](FuzzedDataProvider &input) { return QVariant(real(input)); },
    [](FuzzedDataProvider &input) { return QVariant(input.ConsumeFloatingPointInRange(-3.0F, 3.0F)); },
    [](FuzzedDataProvider &input) { return QVariant(text(input).toUtf8()); },
    [](FuzzedDataProvider &input) { return QVariant(QVariantList{text(input)}); },
    [](FuzzedDataProvider &input) { return QVariant(text(input)); },
    [](FuzzedDataProvider &) { return QVariant(); },
};

void checkValue(const QString &key, const QVariantMap &message) {
    const QVariant value = message.value(key);
    const bool isNumber = value.canConvert<double>() && value.typeId() != QMetaType::QString &&
                          value.typeId() != QMetaType::QByteArray;

    const bool flag = Bridge::boolean(key, message, true);
    if (flag == Bridge::boolean(key, message, false))
        require(isNumber && value.toDouble() == (flag ? 1 : 0), "a boolean is exactly 0 or 1");

    const qint64 count = Bridge::integer(key, message, 1);
    if (count == Bridge::integer(key, message, 2))
        require(isNumber && value.typeId() != QMetaType::Bool &&
                    value.toDouble() == static_cast<double>(count),
                "an integer is what the number says");

    const QString title = Bridge::string(key, message, u"default"_s);
    require(value.typeId() == QMetaType::QString ? title == value.toString() : title == u"default",
            "only text is text");
}

void checkPayloads(FuzzedDataProvider &input) {
    const bool flag = input.ConsumeBool();
    const auto count = input.ConsumeIntegral<qint64>();
    const QString title = text(input);
    const QVariantMap state = Bridge::statePayload(flag, !flag, count, -1, title, {}, flag, !flag);
    require(Bridge::boolean(Bridge::Key::privacyModeOn, state, !flag) == flag &&
                Bridge::integer(Bridge::Key::protectedAppCount, state, ~count) == count &&
                Bridge::string(Bridge::Key::statusTitle, state, u"default"_s) == title &&
                !Bridge::command(state),
            "a state reads as it was sent");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    checkPayloads(input);
    QVariantMap message;
    while (input.remaining_bytes() > 0) {
        const auto key = input.ConsumeIntegralInRange<qsizetype>(0, keys().size() - 1);
        message.insert(keys().at(key), makers[input.ConsumeIntegralInRange<std::size_t>(0, 11)](input));
    }
    for (const QString &key : keys())
        checkValue(key, message);
    if (const auto command = Bridge::command(message)) {
        require(message.value(Bridge::Key::command).toString() == rawValue(*command),
                "a command is its raw value");
        require(Bridge::command(Bridge::commandPayload(*command)) == command,
                "a command reads as it was sent");
    }
    return 0;
}
