#include "desktop/login/FileLoginItem.h"

#include "foundation/FileReading.h"
#include "foundation/FileSentences.h"
#include "foundation/FolderLock.h"
#include "foundation/PrivateFile.h"
#include "foundation/PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <unistd.h>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

// What is larger starts nothing of ours.
constexpr qint64 sizeLimit = 64 * 1024;

} // namespace

FileLoginItem::FileLoginItem(const QString &program, const LoginFile &file)
    : m_program(program)
    , m_file(file) {}

QString FileLoginItem::installedProgram(const QString &folder, const LoginFile &file) {
    for (const QString &place : file.programs) {
        const QFileInfo program(QDir(folder).filePath(place));
        if (program.isFile() && program.isExecutable())
            return QDir::cleanPath(program.absoluteFilePath());
    }
    return QStandardPaths::findExecutable(u"kestrin"_s);
}

QString FileLoginItem::path() const {
    return m_file.folders.first() + u'/' + m_file.name;
}

bool FileLoginItem::isEnabled() const {
    for (const QString &folder : m_file.folders) {
        const QString candidate = folder + u'/' + m_file.name;
        // One that cannot be read hides those behind it all the same.
        if (QFileInfo::exists(candidate))
            return m_file.starts(readWholeFile(candidate, sizeLimit).value_or(QByteArray()));
    }
    return false;
}

QString FileLoginItem::obstacle() const {
    const QFileInfo present(path());
    if (!present.exists() || present.isSymLink() || present.isFile())
        return {};
    return describeUnreadable(path(), FileState::notAFile, 0, sizeLimit);
}

StoreResult FileLoginItem::setEnabled(bool enabled) {
    QString problem = obstacle();
    const bool isOwn = QFileInfo::exists(path());
    if (!problem.isEmpty())
        return {problem, {}};
    if (enabled) {
        if (hasProgram() && (isOwn || !isEnabled()))
            problem = write(true);
    } else if (isForAllUsers()) {
        if (isOwn || isEnabled())
            problem = write(false);
    } else {
        problem = remove();
    }
    if (isEnabled() == enabled)
        return {};
    return {problem.isEmpty() ? path() + u" does not say what was asked for; look into it."_s : problem, {}};
}

bool FileLoginItem::isForAllUsers() const {
    return std::any_of(m_file.folders.cbegin() + 1, m_file.folders.cend(), [this](const QString &folder) {
        return QFileInfo::exists(folder + u'/' + m_file.name);
    });
}

QString FileLoginItem::write(bool enabled) const {
    // Where the program is does not matter to a file that says that it is not started.
    const QByteArray text = m_file.text(hasProgram() ? m_program : u"kestrin"_s, enabled);
    const QString folder = m_file.folders.first();
    const FolderLock lock(QDir::cleanPath(folder + u'/' + m_file.lockFolder));
    if (!lock.isHeld())
        return lock.problem();
    if (!makePrivateFolder(QFile::encodeName(folder)))
        return describeFailure(folder, u"written"_s, errno);
    PrivateFileReplacement file(path(), {viewOf(text)});
    return file.commit() ? QString() : file.problem();
}

QString FileLoginItem::remove() const {
    return ::unlink(QFile::encodeName(path()).constData()) == 0
               ? QString()
               : describeFailure(path(), u"removed"_s, errno);
}

} // namespace kestrin::desktop
