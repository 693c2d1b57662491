#pragma once

#include "runtime/UserDefaults.h"

#include <memory>

namespace kestrin::desktop {

/// Preferences in the macOS user defaults of the Kestrin application, under the keys as they are. The
/// application itself and programs outside its bundle, such as kestrinctl, share them.
///
/// Once somebody listens to `changed`, changes made elsewhere in this process are told by the system's
/// notification, and those of other processes when the system has written them to the domain's file, which
/// may take it some seconds. Main thread only.
class NSUserDefaultsStore final : public runtime::UserDefaults {
    Q_OBJECT

  public:
    explicit NSUserDefaultsStore(QObject *parent = nullptr);
    ~NSUserDefaultsStore() override;

    std::optional<bool> boolean(const QString &key) const override;
    std::optional<QStringList> stringArray(const QString &key) const override;
    foundation::StoreResult setBoolean(const QString &key, bool value) override;
    /// The system has no lock that would keep other processes away meanwhile.
    foundation::StoreResult updateStringArray(const QString &key, const StringArrayChange &change) override;
    bool isEmpty() const override;

  protected:
    void connectNotify(const QMetaMethod &signal) override;

  private:
    struct Private;

    void tellDifferences();

    std::unique_ptr<Private> d;
};

} // namespace kestrin::desktop
