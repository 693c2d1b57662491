#pragma once

#include "foundation/FileWatch.h"
#include "foundation/StoredFile.h"
#include "runtime/UserDefaults.h"

#include <QJsonObject>

#include <functional>
#include <memory>

namespace kestrin::desktop {

/// Preferences in one JSON object, where every value keeps its type, readable by its owner only.
///
/// Every read asks the file, so that what another process stored is seen at once. Once somebody listens to
/// `changed` the file is watched; an event loop has to run for changes of other processes to be told. Keys
/// and values that this class does not know stay as they are. A file that is no JSON object is nobody's
/// choice: values read as they were last, or as absent, and the next one that is stored sets it aside.
class JSONUserDefaults final : public runtime::UserDefaults {
    Q_OBJECT

  public:
    /// Preferences that are larger are none of ours.
    static constexpr qint64 sizeLimit = 1024 * 1024;

    /// Touches no file.
    explicit JSONUserDefaults(const QString &path, QObject *parent = nullptr);

    /// Where the user's preferences are kept: "Kestrin/user-defaults.json" in his configuration directory.
    static QString standardPath();

    std::optional<bool> boolean(const QString &key) const override;
    std::optional<QStringList> stringArray(const QString &key) const override;
    foundation::StoreResult setBoolean(const QString &key, bool value) override;
    foundation::StoreResult updateStringArray(const QString &key, const StringArrayChange &change) override;
    bool isEmpty() const override { return load().isEmpty() && problem().isEmpty(); }
    /// Makes the folder when it is missing.
    QString obstacle() const override;
    QString problem() const override;

  protected:
    void connectNotify(const QMetaMethod &signal) override;

  private:
    const QJsonObject &load() const;
    foundation::StoreResult update(const QString &key,
                                   const std::function<QJsonValue(const QJsonValue &)> &change);
    void tellDifferences();

    const foundation::StoredFile m_file;
    /// What was read last.
    mutable QJsonObject m_read;
    /// What listeners have been told of.
    QJsonObject m_known;
    std::unique_ptr<foundation::FileWatch> m_watch;
};

} // namespace kestrin::desktop
