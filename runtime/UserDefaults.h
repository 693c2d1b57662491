// The user's preferences: typed values under string keys, shared by every process of the user.
#pragma once

#include "foundation/StoreResult.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

namespace kestrin::runtime {

/// A value keeps its type: a boolean is not the text "true", and an empty list is not an absent key. Main
/// thread only. A value that could not be stored reads as before.
class UserDefaults : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;
    using StringArrayChange = std::function<QStringList(const std::optional<QStringList> &)>;

    /// The boolean stored under `key`; absent when there is no value or one of another type.
    virtual std::optional<bool> boolean(const QString &key) const = 0;
    /// The list of strings stored under `key`; absent when there is no value or one of another type.
    virtual std::optional<QStringList> stringArray(const QString &key) const = 0;
    virtual foundation::StoreResult setBoolean(const QString &key, bool value) = 0;
    foundation::StoreResult setStringArray(const QString &key, const QStringList &value);
    /// Puts what `change` makes of the stored list in its place. Where a file is shared by processes, no
    /// other one stores in between; the user defaults of macOS know no such lock.
    virtual foundation::StoreResult updateStringArray(const QString &key,
                                                      const StringArrayChange &change) = 0;
    /// Whether there is no value at all, whoever stored it.
    virtual bool isEmpty() const = 0;
    /// Why values cannot be stored now, as far as can be told without storing one, as a sentence; empty when
    /// they can be.
    virtual QString obstacle() const { return {}; }
    /// Why what is stored cannot be used now, as a sentence; empty when it can be. Values read as they were
    /// last, or as absent, then.
    virtual QString problem() const { return {}; }

  Q_SIGNALS:
    /// The value under `key` is another one than before, whoever changed it: this object, another one over
    /// the same store, or another process. Changes made through this object are told synchronously.
    void changed(const QString &key);
};

/// Preferences that live as long as the object.
class InMemoryUserDefaults : public UserDefaults {
    Q_OBJECT

  public:
    using UserDefaults::UserDefaults;

    std::optional<bool> boolean(const QString &key) const override;
    std::optional<QStringList> stringArray(const QString &key) const override;
    foundation::StoreResult setBoolean(const QString &key, bool value) override;
    foundation::StoreResult updateStringArray(const QString &key, const StringArrayChange &change) override;
    bool isEmpty() const override { return m_values.isEmpty(); }

  private:
    foundation::StoreResult set(const QString &key, const QVariant &value);

    QHash<QString, QVariant> m_values;
};

} // namespace kestrin::runtime
