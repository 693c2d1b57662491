#include "runtime/UserDefaults.h"

namespace kestrin::runtime {

using namespace foundation;

StoreResult UserDefaults::setStringArray(const QString &key, const QStringList &value) {
    return updateStringArray(key, [&](const auto &) { return value; });
}

std::optional<bool> InMemoryUserDefaults::boolean(const QString &key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<QStringList> InMemoryUserDefaults::stringArray(const QString &key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::QStringList ? std::optional(value.toStringList()) : std::nullopt;
}

StoreResult InMemoryUserDefaults::setBoolean(const QString &key, bool value) {
    return set(key, value);
}

StoreResult InMemoryUserDefaults::updateStringArray(const QString &key, const StringArrayChange &change) {
    return set(key, change(stringArray(key)));
}

StoreResult InMemoryUserDefaults::set(const QString &key, const QVariant &value) {
    const QVariant before = m_values.value(key);
    m_values.insert(key, value);
    if (value != before)
        Q_EMIT changed(key);
    return {};
}

} // namespace kestrin::runtime
