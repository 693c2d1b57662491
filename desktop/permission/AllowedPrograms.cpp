#include "desktop/permission/AllowedPrograms.h"

#include "foundation/FileReading.h"
#include "foundation/FolderLock.h"
#include "foundation/PrivateFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

// As the extension reads it.
constexpr qint64 sizeLimit = 65536;

template <typename Change>
bool change(const Change &make) {
    const QString path = AllowedPrograms::path();
    const FolderLock lock(QFileInfo(path).path());
    const FileText file = readFile(path, sizeLimit);
    if (!lock.isHeld() || (file.state != FileState::readable && file.state != FileState::missing))
        return false;
    QStringList lines = QString::fromUtf8(file.bytes).split(u'\n', Qt::SkipEmptyParts);
    const QStringList before = lines;
    make(lines);
    if (lines == before)
        return true;
    if (lines.isEmpty())
        return QFile::remove(path);
    const QByteArray text = (lines.join(u'\n') + u'\n').toUtf8();
    return replacePrivateFile(path, {viewOf(text)});
}

} // namespace

QString AllowedPrograms::path() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Kestrin/" KESTRIN_ALLOWED_PROGRAMS ""_s;
}

bool AllowedPrograms::add(const QStringList &programs) {
    return change([&programs](QStringList &lines) {
        for (const QString &program : programs) {
            if (!lines.contains(program))
                lines.append(program);
        }
    });
}

bool AllowedPrograms::remove(const QStringList &programs) {
    return change([&programs](QStringList &lines) {
        lines.removeIf([&programs](const QString &line) { return programs.contains(line); });
    });
}

} // namespace kestrin::desktop
