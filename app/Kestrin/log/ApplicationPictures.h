#pragma once

#include "engine/MacProtectionEvent.h"
#include "runtime/InstalledApplications.h"

#include <QHash>

namespace kestrin::app {

/// Which picture an application of the log has, as far as it is installed.
class ApplicationPictures {
  public:
    explicit ApplicationPictures(const QList<runtime::InstalledApplication> &installed);

    /// The name of a picture in the desktop's theme, or a path; empty where there is none.
    QString of(const engine::MacProtectionEvent &event) const;
    QString ofName(const QString &name) const;

  private:
    QHash<QString, QString> m_byIdentifier;
    QHash<QString, QString> m_byName;
};

} // namespace kestrin::app
