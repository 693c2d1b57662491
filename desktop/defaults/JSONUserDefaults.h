#pragma once

#include "foundation/FileWatch.h"
#include "runtime/UserDefaults.h"

#include <QJsonObject>

#include <functional>
#include <memory>

namespace kestrin::desktop {

/// Preferences in one JSON object, where every value keeps its type, readable by its owner only.
///
/// Every read asks the file, so that what another process stored is seen at once. Once somebody listens to
/// `changed` the file is watched; an event loop has to run for changes of other processes to be told. Keys
/// and values that this class does not know stay as they are. A file that is no JSON object reads as empty.
class JSONUserDefaults final : public runtime::UserDefaults {
    Q_OBJECT

  public:
    /// Touches no file.
    explicit JSONUserDefaults(const QString &path, QObject *parent = nullptr);

    /// Where the user's preferences are kept: "Kestrin/user-defaults.json" in his configuration directory.
    static QString standardPath();

    std::optional<bool> boolean(const QString &key) const override;
    std::optional<QStringList> stringArray(const QString &key) const override;
    bool setBoolean(const QString &key, bool value) override;
    bool updateStringArray(const QString &key, const StringArrayChange &change) override;
    /// Makes the folder when it is missing.
    bool isWritable() const override;

  protected:
    void connectNotify(const QMetaMethod &signal) override;

  private:
    QJsonObject load() const;
    bool update(const QString &key, const std::function<QJsonValue(const QJsonValue &)> &change);
    void tellDifferences();

    QString m_path;
    /// What listeners have been told of.
    QJsonObject m_known;
    std::unique_ptr<foundation::FileWatch> m_watch;
};

} // namespace kestrin::desktop
