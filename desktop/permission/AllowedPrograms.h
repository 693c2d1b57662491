// The programs, other than those of the package, which the GNOME shell's extension answers.
#pragma once

#include <QStringList>

namespace kestrin::desktop {

/// One absolute path a line, in a file of the user's own; other lines say nothing.
class AllowedPrograms {
  public:
    static QString path();

    /// Whether the file is so afterwards.
    static bool add(const QStringList &programs);
    static bool remove(const QStringList &programs);
};

} // namespace kestrin::desktop
