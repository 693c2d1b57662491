#include "engine/OwnApplications.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::engine {

namespace {

constexpr qsizetype idLength = 60;

QString quoted(const QString &text) {
    return u'"' + text + u'"';
}

QStringList trimmedOnce(const QStringList &texts) {
    QStringList result;
    for (const QString &text : texts) {
        const QString trimmed = text.trimmed();
        if (!trimmed.isEmpty() && !result.contains(trimmed, Qt::CaseInsensitive))
            result.append(trimmed);
    }
    return result;
}

/// The accents of Latin, Greek and Cyrillic; other scripts have marks that make another letter.
bool isAccent(QChar c) {
    return c >= QChar(0x300) && c <= QChar(0x36f);
}

/// Lower case, with hyphens for what is neither letter nor digit: "Café 2.0" is "cafe-2-0". Letters of every
/// script stay what they are.
QString idFor(const QString &name) {
    QString plain = name.normalized(QString::NormalizationForm_KD);
    plain.removeIf(isAccent);
    plain = plain.normalized(QString::NormalizationForm_C).toLower();
    QString id;
    for (const QChar c : std::as_const(plain)) {
        // A pair of surrogates is a letter of a rare script, or a pictograph, and stays together.
        if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate())
            id += c;
        else if (!id.isEmpty() && !id.endsWith(u'-'))
            id += u'-';
    }
    id.truncate(idLength);
    if (id.endsWith(u'-') || (!id.isEmpty() && id.back().isHighSurrogate()))
        id.chop(1);
    return id.isEmpty() ? u"app"_s : id;
}

QString uniqueIdFor(const QString &name, const RiskAppCatalog &catalog) {
    const QString first = idFor(name);
    QString id = first;
    for (int number = 2; findDefinition(catalog, id); ++number)
        id = first + u'-' + QString::number(number);
    return id;
}

QString tooLong(const QStringList &texts) {
    const auto found = std::find_if(texts.cbegin(), texts.cend(), [](const QString &text) {
        return text.size() > OwnApplicationLimits::textLength;
    });
    return found == texts.cend() ? QString() : *found;
}

QString limitSentence(const OwnApplication &application, qsizetype count) {
    if (application.name.isEmpty())
        return u"An application needs a name."_s;
    if (isKestrinsName(application.name))
        return u"Kestrin does not close itself."_s;
    const QStringList texts = QStringList{application.name} + application.identifiers + application.aliases;
    if (const QString text = tooLong(texts); !text.isEmpty())
        return quoted(text.first(20) + u'…') + u" is too long; names and identifiers have at most "_s +
               QString::number(OwnApplicationLimits::textLength) + u" characters."_s;
    if (std::max(application.identifiers.size(), application.aliases.size()) >
        OwnApplicationLimits::textsPerApplication)
        return u"An application has at most "_s + QString::number(OwnApplicationLimits::textsPerApplication) +
               u" identifiers and as many further names."_s;
    if (count >= OwnApplicationLimits::applications)
        return u"There are "_s + QString::number(count) +
               u" applications of your own already, and more are not kept; remove one first."_s;
    return {};
}

/// What the catalog knows already, as the matcher sees it.
QString knownSentence(const OwnApplication &application, const RiskAppCatalog &catalog) {
    const auto sentence = [](const QString &text, const RiskAppDefinition &known) {
        return quoted(text) + u" is "_s + known.displayName + u", which is in the catalog already as "_s +
               quoted(known.id) + u'.';
    };
    for (const QString &name : QStringList{application.name} + application.aliases) {
        if (const auto known = catalog.definition({0, name, std::nullopt, std::nullopt}))
            return sentence(name, *known);
    }
    for (const QString &identifier : application.identifiers) {
        if (const auto known = catalog.definition({0, {}, identifier, std::nullopt}))
            return sentence(identifier, *known);
    }
    return {};
}

bool isUsable(const QString &text) {
    return !text.trimmed().isEmpty() && text.size() <= OwnApplicationLimits::textLength;
}

QString flawOf(const RiskAppDefinition &definition) {
    if (!isUsable(definition.id) || !isUsable(definition.displayName))
        return u"an application in it has no id or no name, or one that is too long"_s;
    const auto areUsable = [](const QList<QString> &texts) {
        return texts.size() <= OwnApplicationLimits::textsPerApplication &&
               std::all_of(texts.cbegin(), texts.cend(), isUsable);
    };
    if (!areUsable(definition.bundleIdentifiers) || !areUsable(definition.aliases))
        return quoted(definition.id) +
               u" has too many identifiers or names in it, or one that is empty or too long"_s;
    return {};
}

} // namespace

bool isKestrinsName(const QString &name) {
    return normalizedAppName(name) == u"kestrin";
}

RiskAppCatalog catalogWith(const QList<RiskAppDefinition> &own) {
    return {RiskAppCatalog::defaultDefinitions() + own};
}

const RiskAppDefinition *findDefinition(const RiskAppCatalog &catalog, const QString &id) {
    const auto found = std::find_if(catalog.definitions.cbegin(), catalog.definitions.cend(),
                                    [&](const RiskAppDefinition &definition) { return definition.id == id; });
    return found == catalog.definitions.cend() ? nullptr : &*found;
}

QString flawOf(const QList<RiskAppDefinition> &own) {
    if (own.size() > OwnApplicationLimits::applications)
        return u"it holds more than "_s + QString::number(OwnApplicationLimits::applications) +
               u" applications"_s;
    const QSet<QString> builtIn = defaultDefinitionIDs();
    QSet<QString> seen;
    for (const RiskAppDefinition &definition : own) {
        if (const QString flaw = flawOf(definition); !flaw.isEmpty())
            return flaw;
        if (builtIn.contains(definition.id))
            return quoted(definition.id) + u" in it is the id of an application that is built in"_s;
        if (seen.contains(definition.id))
            return u"two applications in it have the id "_s + quoted(definition.id);
        seen.insert(definition.id);
    }
    return {};
}

QString appendOwn(const OwnApplication &wish, QList<RiskAppDefinition> &own) {
    OwnApplication application = wish;
    application.name = wish.name.trimmed();
    application.identifiers = trimmedOnce(wish.identifiers);
    application.aliases = trimmedOnce(wish.aliases);
    application.aliases.removeIf(
        [&](const QString &alias) { return alias.compare(application.name, Qt::CaseInsensitive) == 0; });
    if (QString sentence = limitSentence(application, own.size()); !sentence.isEmpty())
        return sentence;
    const RiskAppCatalog catalog = catalogWith(own);
    if (QString sentence = knownSentence(application, catalog); !sentence.isEmpty())
        return sentence;

    QList<MacRiskCategory> categories;
    for (const MacRiskCategory category : application.categories) {
        if (!categories.contains(category))
            categories.append(category);
    }
    own.append({uniqueIdFor(application.name, catalog), application.name, application.identifiers,
                application.aliases, categories, application.action});
    return {};
}

} // namespace kestrin::engine
