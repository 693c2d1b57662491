#include "desktop/permission/OwnPrograms.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

OwnPrograms OwnPrograms::find() {
    const QDir folder(QCoreApplication::applicationDirPath());
    OwnPrograms programs;
    programs.areInstalled =
        folder.canonicalPath() == QFileInfo(QStringLiteral(KESTRIN_PROGRAMS)).canonicalFilePath();
    for (const QString &place :
         {u"kestrin"_s, u"../app/Kestrin/kestrin"_s, u"kestrinctl"_s, u"../../cli/kestrinctl"_s}) {
        const QFileInfo program(folder.filePath(place));
        if (program.isFile() && program.isExecutable())
            programs.paths.append(program.canonicalFilePath());
    }
    return programs;
}

} // namespace kestrin::desktop
