// The file of the user defaults: whatever is in it, a value that is stored reads back, and the others stay.

#include "runtime/JSONUserDefaults.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::fuzzing;

namespace {

const QString flag = u"kestrin.mac.enforceActions"_s;
const QString list = u"kestrin.mac.enabledModeIDs"_s;

QJsonObject objectIn(const QString &path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the file is there");
    return QJsonDocument::fromJson(file.readAll()).object();
}

QJsonValue anyValue(FuzzedDataProvider &input, int depth) {
    switch (input.ConsumeIntegralInRange(0, depth > 0 ? 5 : 3)) {
    case 0:
        return input.ConsumeBool();
    case 1:
        return input.ConsumeFloatingPointInRange(-1e9, 1e9);
    case 2:
        return anyText(input, 12);
    case 3:
        return {};
    default:
        QJsonArray array;
        while (input.ConsumeBool())
            array.append(anyValue(input, depth - 1));
        return array;
    }
}

/// A text that has nothing to do with JSON most of the time, or an object that has our keys now and then.
QByteArray anyFile(FuzzedDataProvider &input) {
    if (input.ConsumeBool())
        return QByteArray::fromStdString(input.ConsumeRemainingBytesAsString());
    QJsonObject object;
    while (input.remaining_bytes() > 0)
        object.insert(input.PickValueInArray({flag, list, u"kestrin.mac.privacyModeOn"_s, u"other"_s}),
                      anyValue(input, 3));
    return QJsonDocument(object).toJson();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString path = scratchFile(u"user-defaults.json"_s);
    FuzzedDataProvider input(data, size);
    writeFile(path, anyFile(input));
    QJsonObject expected = objectIn(path);

    JSONUserDefaults defaults(path);
    const auto flagBefore = defaults.boolean(flag);
    const auto listBefore = defaults.stringArray(list);
    require(!flagBefore || expected.value(flag).isBool(), "a boolean is no other type");
    require(!listBefore || expected.value(list).toArray().size() == listBefore->size(),
            "a list has every element");

    const bool wanted = !flagBefore.value_or(false);
    defaults.setBoolean(flag, wanted);
    require(defaults.boolean(flag) == wanted, "a boolean reads as it was stored");
    require(defaults.stringArray(list) == listBefore, "its neighbour keeps its value");
    const QStringList modes = listBefore.value_or(QStringList()) + QStringList{u"sleep"_s};
    defaults.setStringArray(list, modes);
    require(defaults.stringArray(list) == modes, "a list reads as it was stored");
    defaults.setStringArray(list, {});
    require(defaults.stringArray(list) == QStringList(), "an empty list is not an absent one");

    expected.insert(flag, wanted);
    expected.insert(list, QJsonArray());
    require(objectIn(path) == expected, "values that we do not know stay");
    return 0;
}
