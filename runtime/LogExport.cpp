#include "runtime/LogExport.h"

#include "foundation/PrivateFile.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;

StoreResult exportTo(const QString &path, const QByteArray &text) {
    const QFileInfo file(path);
    if (!file.absoluteDir().exists())
        return {u"There is no folder "_s + file.absolutePath() + u"; choose another one."_s, {}};
    // The folder is the user's, and any other name in it may be the name of something.
    const QByteArray suffix = '.' + QUuid::createUuid().toByteArray(QUuid::Id128) + ".new";
    PrivateFileReplacement replacement(file.absoluteFilePath(), {viewOf(text)}, suffix);
    return replacement.commit() ? StoreResult() : StoreResult{replacement.problem(), {}};
}

} // namespace kestrin::runtime
