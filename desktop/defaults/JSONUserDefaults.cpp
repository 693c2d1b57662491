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
#include <utility>

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

namespace {

std::optional<QStringList> strings(const QJsonValue &value) {
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

} // namespace

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
    return strings(load().value(key));
}

bool JSONUserDefaults::setBoolean(const QString &key, bool value) {
    return update(key, [value](const auto &) { return value; });
}

bool JSONUserDefaults::updateStringArray(const QString &key, const StringArrayChange &change) {
    return update(key, [&change](const QJsonValue &stored) {
        return QJsonArray::fromStringList(change(strings(stored)));
    });
}

bool JSONUserDefaults::isWritable() const {
    const QString folder = QFileInfo(m_path).absolutePath();
    return QDir().mkpath(folder) && ::access(QFile::encodeName(folder).constData(), W_OK) == 0;
}

QJsonObject JSONUserDefaults::load() const {
    return QJsonDocument::fromJson(readWholeFile(m_path).value_or(QByteArray())).object();
}

bool JSONUserDefaults::update(const QString &key,
                              const std::function<QJsonValue(const QJsonValue &)> &change) {
    {
        const auto lock = FileLock::lockFolderOf(m_path);
        QJsonObject values = load();
        const QJsonValue former = values.value(key);
        const QJsonValue value = change(former);
        if (value == former)
            return true;
        if (!m_watch)
            m_known = values;
        values.insert(key, value);
        const QByteArray text = QJsonDocument(values).toJson();
        if (!lock || !replacePrivateFile(m_path, {viewOf(text)}))
            return false;
    }
    tellDifferences();
    return true;
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
