// How values become JSON. Included by the files that instantiate encodeJson for their records, and by whoever
// builds a larger JSON value out of records.
#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/RawValues.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUuid>

#include <algorithm>

namespace kestrin::foundation {

/// The text with a replacement character for each lone surrogate, which no JSON reader would accept back.
/// Qt's own conversion drops one at the end.
inline QString wellFormed(const QString &text) {
    if (text.isValidUtf16())
        return text;
    QString whole = text;
    for (qsizetype i = 0; i < whole.size(); ++i) {
        const bool isPair =
            whole[i].isHighSurrogate() && i + 1 < whole.size() && whole[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (whole[i].isSurrogate())
            whole[i] = QChar::ReplacementCharacter;
    }
    return whole;
}

inline QJsonValue toJsonValue(bool value) {
    return value;
}
inline QJsonValue toJsonValue(qint32 value) {
    return value;
}
inline QJsonValue toJsonValue(qint64 value) {
    return value;
}
inline QJsonValue toJsonValue(const QString &value) {
    return wellFormed(value);
}
inline QJsonValue toJsonValue(const QUuid &value) {
    return value.toString(QUuid::WithoutBraces);
}
inline QJsonValue toJsonValue(const QDateTime &value) {
    return value.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ssZ"));
}

template <RawRepresentable Enumeration>
QJsonValue toJsonValue(Enumeration value) {
    return rawValue(value);
}

template <JsonRecord Record>
QJsonValue toJsonValue(const Record &record);

template <typename Element>
QJsonValue toJsonValue(const QList<Element> &list) {
    QJsonArray array;
    for (const Element &element : list)
        array.append(toJsonValue(element));
    return array;
}

/// Sorted, so that equal sets give equal files; no reader may rely on it.
inline QJsonValue toJsonValue(const QSet<QString> &set) {
    QStringList elements(set.cbegin(), set.cend());
    std::sort(elements.begin(), elements.end());
    return toJsonValue(QList<QString>(elements));
}

namespace detail {

template <typename Value>
void insertJsonField(QJsonObject &object, QLatin1StringView key, const Value &value) {
    object.insert(key, toJsonValue(value));
}

template <typename Value>
void insertJsonField(QJsonObject &object, QLatin1StringView key, const std::optional<Value> &value) {
    if (value)
        object.insert(key, toJsonValue(*value));
}

} // namespace detail

template <JsonRecord Record>
QJsonValue toJsonValue(const Record &record) {
    QJsonObject object;
    std::apply(
        [&](const auto &...field) {
            (detail::insertJsonField(
                 object, QLatin1StringView(field.key.data(), static_cast<qsizetype>(field.key.size())),
                 record.*field.member),
             ...);
        },
        Record::jsonFields());
    return object;
}

inline QByteArray jsonText(const QJsonValue &value, JsonLayout layout = JsonLayout::compact) {
    const auto format = layout == JsonLayout::pretty ? QJsonDocument::Indented : QJsonDocument::Compact;
    return value.isArray() ? QJsonDocument(value.toArray()).toJson(format)
                           : QJsonDocument(value.toObject()).toJson(format);
}

template <typename Value>
QByteArray encodeJson(const Value &value, JsonLayout layout) {
    return jsonText(toJsonValue(value), layout);
}

} // namespace kestrin::foundation
