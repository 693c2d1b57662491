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
    QString path() const;
    bool isEnabled() const override;
    /// What has the file's name and is none is left alone. Naming the program anew happens in the user's own
    /// file, if there is one.
    foundation::StoreResult setEnabled(bool enabled) override;

  private:
    bool isForAllUsers() const;
    QString obstacle() const;
    /// These tell why it failed, as a sentence.
    QString write(bool enabled) const;
    QString remove() const;

    QString m_program;
    LoginFile m_file;
};

} // namespace kestrin::desktop
