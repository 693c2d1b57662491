#include "desktop/defaults/JSONUserDefaults.h"

#include "foundation/FileLock.h"
#include "foundation/FileReading.h"
#include "foundation/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaMethod>
#include <QStandardPaths>

#include <unistd.h>

#include <algorithm>

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

JSONUserDefaults::JSONUserDefaults(const QString &path, QObject *parent)
    : UserDefaults(parent)
    , m_path(path) {}

QString JSONUserDefaults::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Kestrin/user-defaults.json");
}

std::optional<bool> JSONUserDefaults::boolean(const QString &key) const {
    const QJsonValue value = load().value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<QStringList> JSONUserDefaults::stringArray(const QString &key) const {
    const QJsonValue value = load().value(key);
    const QJsonArray array = value.toArray();
    const bool allStrings =
        std::all_of(array.begin(), array.end(), [](const auto &item) { return item.isString(); });
    if (!value.isArray() || !allStrings)
        return std::nullopt;
    QStringList list;
    for (const auto &item : array)
        list.append(item.toString());
    return list;
}

void JSONUserDefaults::setBoolean(const QString &key, bool value) {
    set(key, value);
}

void JSONUserDefaults::setStringArray(const QString &key, const QStringList &value) {
    set(key, QJsonArray::fromStringList(value));
}

bool JSONUserDefaults::isWritable() const {
    const QString folder = QFileInfo(m_path).absolutePath();
    return QDir().mkpath(folder) && ::access(QFile::encodeName(folder).constData(), W_OK) == 0;
}

QJsonObject JSONUserDefaults::load() const {
    return QJsonDocument::fromJson(readWholeFile(m_path).value_or(QByteArray())).object();
}

void JSONUserDefaults::set(const QString &key, const QJsonValue &value) {
    using namespace std::chrono_literals;
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QDir().mkpath(folder))
        return;
    {
        const auto lock = FileLock::lockFolder(folder, 10s);
        QJsonObject values = load();
        if (!lock || values.value(key) == value)
            return;
        if (!m_watch)
            m_known = values;
        values.insert(key, value);
        const QByteArray text = QJsonDocument(values).toJson();
        replacePrivateFile(m_path, {viewOf(text)});
    }
    tellDifferences();
}

void JSONUserDefaults::connectNotify(const QMetaMethod &signal) {
    if (m_watch || signal != QMetaMethod::fromSignal(&UserDefaults::changed))
        return;
    m_watch = std::make_unique<FileWatch>(m_path);
    m_known = load();
    connect(m_watch.get(), &FileWatch::changed, this, &JSONUserDefaults::tellDifferences);
}

void JSONUserDefaults::tellDifferences() {
    const QJsonObject before = std::exchange(m_known, load());
    const QJsonObject now = m_known;
    QStringList keys = before.keys() + now.keys();
    keys.removeDuplicates();
    for (const QString &key : std::as_const(keys)) {
        if (before.value(key) != now.value(key))
            Q_EMIT changed(key);
    }
}

} // namespace kestrin::desktop
