// Applications of the user's own, as many as nobody adds.
#pragma once

#include <QString>

namespace kestrin::bench {

/// Stores so many in the support folder, none of which ever runs.
void storeOwnApplications(const QString &supportFolder, int count);

} // namespace kestrin::bench
