#include "desktop/defaults/JSONUserDefaults.h"

#include "foundation/FileSentences.h"
#include "foundation/PrivateFolder.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaMethod>
#include <QStandardPaths>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

namespace {

/// None when what is there cannot be used.
std::optional<QJsonObject> valuesIn(const FileText &text) {
    const bool isNothingStored =
        text.state == FileState::missing || (text.state == FileState::readable && text.bytes.isEmpty());
    if (isNothingStored)
        return QJsonObject();
    const QJsonDocument document = QJsonDocument::fromJson(text.bytes);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

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
    , m_file{path, sizeLimit} {}

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

StoreResult JSONUserDefaults::setBoolean(const QString &key, bool value) {
    return update(key, [value](const auto &) { return value; });
}

StoreResult JSONUserDefaults::updateStringArray(const QString &key, const StringArrayChange &change) {
    return update(key, [&change](const QJsonValue &stored) {
        return QJsonArray::fromStringList(change(strings(stored)));
    });
}

QString JSONUserDefaults::obstacle() const {
    const QByteArray folder = folderOf(QFile::encodeName(m_file.path));
    if (!makePrivateFolder(folder) || ::access(folder.constData(), W_OK) != 0)
        return describeFailure(QFile::decodeName(folder), QStringLiteral("written"), errno);
    // What may not be read is set aside, so it is not in the way.
    const FileText text = m_file.read();
    return text.state == FileState::denied ? QString() : m_file.problemOf(text);
}

QString JSONUserDefaults::problem() const {
    return m_file.problem([](const QByteArray &text) { return QJsonDocument::fromJson(text).isObject(); });
}

const QJsonObject &JSONUserDefaults::load() const {
    auto values = valuesIn(m_file.read());
    // Without any that were read before, these must not count as absent if what was in the way has gone by
    // now.
    if (!values && m_read.isEmpty() && problem().isEmpty())
        values = valuesIn(m_file.read());
    if (values)
        m_read = *values;
    return m_read;
}

StoreResult JSONUserDefaults::update(const QString &key,
                                     const std::function<QJsonValue(const QJsonValue &)> &change) {
    StoreResult result;
    {
        StoredFileChange file(m_file);
        const auto stored = valuesIn(file.text());
        QJsonObject values = stored.value_or(m_read);
        const QJsonValue former = values.value(key);
        const QJsonValue value = change(former);
        if (stored && value == former)
            return {};
        if (!m_watch)
            m_known = values;
        values.insert(key, value);
        result = file.replaceBy(QJsonDocument(values).toJson(), !stored);
    }
    if (result.isKept())
        tellDifferences();
    return result;
}

void JSONUserDefaults::connectNotify(const QMetaMethod &signal) {
    if (m_watch || signal != QMetaMethod::fromSignal(&UserDefaults::changed))
        return;
    m_watch = std::make_unique<FileWatch>(m_file.path);
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
