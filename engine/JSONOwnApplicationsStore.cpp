#include "engine/JSONOwnApplicationsStore.h"

#include "engine/OwnApplications.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

using namespace foundation;

namespace {

struct Reading {
    QList<RiskAppDefinition> definitions;
    /// Why there are none, if they are not simply missing; see flawOf().
    QString flaw;
};

Reading readingOf(const QByteArray &text) {
    if (text.isEmpty())
        return {};
    const auto catalog = decodeJson<RiskAppCatalog>(text);
    if (!catalog)
        return {{}, u"it is not a JSON object with complete \"definitions\""_s};
    if (const QString flaw = flawOf(catalog->definitions); !flaw.isEmpty())
        return {{}, flaw};
    return {catalog->definitions, {}};
}

} // namespace

QString JSONOwnApplicationsStore::problemOf(const FileText &text) const {
    if (const QString problem = m_file.problemOf(text); !problem.isEmpty())
        return problem;
    const QString flaw = readingOf(text.bytes).flaw;
    return flaw.isEmpty()
               ? QString()
               : m_file.path + u" does not read as it should, because "_s + flaw +
                     u"; until you mend it or move it away, its applications are unknown and none can be "
                     "added or removed."_s;
}

std::optional<QList<RiskAppDefinition>> JSONOwnApplicationsStore::stored() {
    const FileText text = m_file.read();
    if (!m_file.problemOf(text).isEmpty())
        return std::nullopt;
    Reading reading = readingOf(text.bytes);
    return reading.flaw.isEmpty() ? std::optional(std::move(reading.definitions)) : std::nullopt;
}

StoreResult JSONOwnApplicationsStore::update(const Change &change) {
    StoredFileChange file(m_file);
    StoreResult result;
    result.problem = problemOf(file.text());
    QList<RiskAppDefinition> definitions = readingOf(file.former()).definitions;
    // Where the lock could not be had, it says so itself.
    if (result.isKept() && file.isPossible())
        result.problem = change(definitions);
    if (!result.isKept())
        return result;
    return file.replaceBy(encodeJson(RiskAppCatalog{definitions}, JsonLayout::pretty), false);
}

QString JSONOwnApplicationsStore::problem() {
    // What was in the way may have gone by now.
    return stored() ? QString() : problemOf(m_file.read());
}

} // namespace kestrin::engine
