// What could be started on this machine.
#pragma once

#include <QList>
#include <QString>

namespace kestrin::runtime {

/// An application of the desktop's menus, called as it is called when it runs.
struct InstalledApplication {
    QString name;
    QString identifier;
    /// The name of its picture in the desktop's theme, or a path; empty when it has none.
    QString icon;

    bool operator==(const InstalledApplication &) const = default;
};

/// Every question is answered as things are now. Main thread only.
class InstalledApplications {
  public:
    virtual ~InstalledApplications() = default;

    /// In the order of their names.
    virtual QList<InstalledApplication> list() = 0;
};

/// A list that lives as long as the object.
class InMemoryInstalledApplications final : public InstalledApplications {
  public:
    QList<InstalledApplication> list() override { return applications; }

    QList<InstalledApplication> applications;
};

} // namespace kestrin::runtime
