#include "desktop/wayland/ProcessMatch.h"

#include <QLatin1StringView>

#include <algorithm>
#include <functional>
#include <numeric>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

using Candidates = QList<MatchCandidate>;
using Evidence = std::function<bool(const MatchCandidate &)>;

Candidates those(const Candidates &candidates, const Evidence &evidence) {
    Candidates result;
    std::copy_if(candidates.cbegin(), candidates.cend(), std::back_inserter(result), evidence);
    return result;
}

bool isSame(QStringView text, QStringView other) {
    return !text.isEmpty() && text.compare(other, Qt::CaseInsensitive) == 0;
}

QString folderOf(const QString &path) {
    return path.first(std::max<qsizetype>(path.lastIndexOf(u'/'), 0));
}

QString nameOf(const QString &path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

/// Whether programs of many makers lie in the folder side by side.
bool isCommonFolder(const QString &folder) {
    const QString name = nameOf(folder);
    return name == "bin"_L1 || name == "sbin"_L1 || name == "games"_L1 || name == "libexec"_L1 ||
           name == "lib"_L1 || folder.isEmpty();
}

/// Launchers are often scripts that start the program beside them.
bool isProgramOf(const MatchQuestion &question, const MatchCandidate &candidate) {
    if (question.resolvedProgram.isEmpty() || candidate.executable.isEmpty())
        return false;
    const QString folder = folderOf(question.resolvedProgram);
    return candidate.executable == question.resolvedProgram ||
           (folderOf(candidate.executable) == folder && !isCommonFolder(folder));
}

bool isCalledAs(const MatchQuestion &question, const MatchCandidate &candidate) {
    const auto lastPart = [](const QString &id) { return id.sliced(id.lastIndexOf(u'.') + 1); };
    constexpr qsizetype kept = 15;
    for (const QString &name : {question.appId, lastPart(question.appId), lastPart(question.entryId),
                                nameOf(question.program), nameOf(question.resolvedProgram)}) {
        if (isSame(name, nameOf(candidate.executable)) ||
            isSame(name.first(std::min(name.size(), kept)), candidate.commandName))
            return true;
    }
    return false;
}

/// How many of its X11 windows bear the app id as their class, as those of XWayland do.
qsizetype x11WindowsOf(const MatchQuestion &question, const MatchCandidate &candidate) {
    const QStringList &classes = candidate.windowClasses;
    return std::count_if(classes.cbegin(), classes.cend(), [&question](const QString &windowClass) {
        return isSame(question.appId, windowClass);
    });
}

/// Leaves those of whom the evidence speaks, the strongest first, and says whether any does.
bool narrow(Candidates &left, const MatchQuestion &question) {
    const auto isProgram = [&question](const MatchCandidate &candidate) {
        return isProgramOf(question, candidate) || isCalledAs(question, candidate);
    };
    const auto isItsId = [&question](const QString &id) {
        return isSame(id, question.appId) || isSame(id, question.entryId);
    };
    const bool isProgramThere = std::any_of(left.cbegin(), left.cend(), isProgram);
    const Evidence evidence[] = {
        [&](const MatchCandidate &candidate) { return candidate.process == question.busOwner; },
        [&](const MatchCandidate &candidate) { return isItsId(candidate.sandboxId); },
        // What was started from a terminal is in the terminal's unit.
        [&](const MatchCandidate &candidate) {
            return isItsId(candidate.unitId) && (!isProgramThere || isProgram(candidate));
        },
        [&](const MatchCandidate &candidate) { return isProgramOf(question, candidate); },
        [&](const MatchCandidate &candidate) { return isCalledAs(question, candidate); },
    };
    bool speaks = false;
    for (const Evidence &speaksOf : evidence) {
        if (Candidates narrower = those(left, speaksOf); !narrower.isEmpty()) {
            left = std::move(narrower);
            speaks = true;
        }
    }
    return speaks;
}

} // namespace

qint32 matchingProcess(const MatchQuestion &question, const Candidates &candidates) {
    const Evidence isNew = [&question](const MatchCandidate &candidate) {
        return question.isNew && candidate.isNew;
    };
    const Evidence isUsual = [](const MatchCandidate &candidate) { return candidate.hasSuchWindows; };
    const Candidates onX11 = those(candidates, [&question](const MatchCandidate &candidate) {
        return x11WindowsOf(question, candidate) > 0;
    });
    const qsizetype x11Windows = std::accumulate(onX11.cbegin(), onX11.cend(), qsizetype{0},
                                                 [&question](qsizetype sum, const MatchCandidate &candidate) {
                                                     return sum + x11WindowsOf(question, candidate);
                                                 });
    const bool areAllOnX11 = x11Windows >= question.windows;

    Candidates left =
        areAllOnX11 ? onX11
                    : those(candidates, [](const MatchCandidate &candidate) { return candidate.isNative; });
    const bool speaksForThem = narrow(left, question) || areAllOnX11;
    if (!areAllOnX11 && !onX11.isEmpty())
        // Some are, and it cannot be told which.
        left = those(left + onX11, isNew);
    else if (!speaksForThem)
        left = those(left,
                     [&](const MatchCandidate &candidate) { return isNew(candidate) || isUsual(candidate); });
    else if (left.size() > 1)
        left = those(left, std::any_of(left.cbegin(), left.cend(), isNew) ? isNew : isUsual);
    return left.size() == 1 ? left.first().process : 0;
}

} // namespace kestrin::desktop
