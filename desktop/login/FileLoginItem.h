#pragma once

#include "desktop/login/LoginFile.h"

namespace kestrin {

/// Whether this user's login starts Kestrin in the background. Every question is answered by the files as
/// they are now: the desktop's own settings may change them too.
class LoginItem {
  public:
    /// `program` is the absolute path of the window's program. When it is empty, starting at login can be
    /// asked about and switched off, but not on.
    explicit LoginItem(const QString &program, const LoginFile &file = standardFile());

    /// That of the platform.
    static LoginFile standardFile();
    /// The window's program as it is installed: where the platform puts it, seen from `folder`, else in PATH;
    /// empty when it is in neither.
    static QString installedProgram(const QString &folder, const LoginFile &file = standardFile());

    bool hasProgram() const { return !m_program.isEmpty(); }
    /// The user's own file, which is there only if there is something to say.
    QString path() const;

    bool isEnabled() const;
    /// Returns whether it is so afterwards; it is not when the file cannot be written. Switching on what is
    /// on already names this program anew in the user's own file, if there is one.
    bool setEnabled(bool enabled);

  private:
    bool isForAllUsers() const;
    void write(bool enabled) const;

    QString m_program;
    LoginFile m_file;
};

} // namespace kestrin
