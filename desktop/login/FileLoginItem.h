#pragma once

#include "desktop/login/LoginFile.h"
#include "runtime/LoginItem.h"

namespace kestrin::desktop {

/// The choice as files that the desktop reads at login.
class FileLoginItem final : public runtime::LoginItem {
  public:
    /// `program` is the absolute path of the window's program; empty when it is not known.
    FileLoginItem(const QString &program, const LoginFile &file);

    /// The window's program as it is installed: where the platform puts it, seen from `folder`, else in PATH;
    /// empty when it is in neither.
    static QString installedProgram(const QString &folder, const LoginFile &file);

    bool hasProgram() const override { return !m_program.isEmpty(); }
    /// The user's own file, which is there only if there is something to say.
    QString path() const override;
    QString obstacle() const override;
    bool isEnabled() const override;
    /// It is not as asked for when the file cannot be written. Naming the program anew happens in the user's
    /// own file, if there is one.
    bool setEnabled(bool enabled) override;

  private:
    bool isForAllUsers() const;
    void write(bool enabled) const;

    QString m_program;
    LoginFile m_file;
};

} // namespace kestrin::desktop
