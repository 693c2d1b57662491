#include "runtime/UserDefaults.h"

namespace kestrin::runtime {

std::optional<bool> InMemoryUserDefaults::boolean(const QString &key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<QStringList> InMemoryUserDefaults::stringArray(const QString &key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::QStringList ? std::optional(value.toStringList()) : std::nullopt;
}

void InMemoryUserDefaults::setBoolean(const QString &key, bool value) {
    set(key, value);
}

void InMemoryUserDefaults::setStringArray(const QString &key, const QStringList &value) {
    set(key, value);
}

void InMemoryUserDefaults::set(const QString &key, const QVariant &value) {
    if (m_values.contains(key) && m_values.value(key) == value)
        return;
    m_values.insert(key, value);
    Q_EMIT changed(key);
}

} // namespace kestrin::runtime
