#include "app/Kestrin/rows/UseTexts.h"

#include "app/Kestrin/rows/ShownText.h"
#include "foundation/VisibleText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace foundation;
using namespace engine;

namespace {

constexpr qsizetype longName = 40;
constexpr qsizetype mostLines = 5;
constexpr qsizetype mostSentences = 3;

/// An application, as its user tells applications apart, and what it uses.
struct UsingApp {
    QString name;
    QList<MacRiskCategory> categories;
};

void take(const QList<MacRiskCategory> &used, QList<MacRiskCategory> &categories) {
    for (const MacRiskCategory category : used) {
        if (!categories.contains(category))
            categories.append(category);
    }
    std::sort(categories.begin(), categories.end());
}

QString shortName(const QString &name) {
    QString visible = visibleText(name);
    if (visible.size() > longName) {
        visible.truncate(longName - 1);
        if (visible.back().isHighSurrogate())
            visible.chop(1);
        visible += u'…';
    }
    return shownName(visible);
}

QList<UsingApp> appsOf(const QList<DeviceUse> &uses) {
    QList<UsingApp> apps;
    for (const DeviceUse &use : uses) {
        const QString name = shortName(use.localizedName);
        auto app =
            std::find_if(apps.begin(), apps.end(), [&](const UsingApp &each) { return each.name == name; });
        if (app == apps.end())
            app = apps.insert(apps.end(), {name, {}});
        take({use.category}, app->categories);
    }
    return apps;
}

/// "the microphone, the camera and the screen".
QString devicesOf(const QList<MacRiskCategory> &categories, const QString &conjunction) {
    QStringList devices;
    for (const MacRiskCategory category : categories)
        devices.append(u"the "_s + deviceName(category));
    const QString last = devices.takeLast();
    return devices.isEmpty() ? last : devices.join(u", "_s) + u' ' + conjunction + u' ' + last;
}

} // namespace

DeviceUse shownUse(const DeviceUse &use) {
    DeviceUse shown = use;
    shown.localizedName = shortName(use.localizedName);
    return shown;
}

QStringList useLines(const QList<DeviceUse> &uses) {
    const QList<UsingApp> apps = appsOf(uses);
    QStringList lines;
    for (const UsingApp &app : apps.mid(0, mostLines)) {
        QStringList devices;
        for (const MacRiskCategory category : app.categories)
            devices.append(deviceName(category));
        lines.append(app.name + u": "_s + devices.join(u", "_s));
    }
    if (apps.size() > mostLines)
        lines.append(u"and "_s + shownNumber(apps.size() - mostLines) + u" more"_s);
    return lines;
}

QString useSentences(const QList<DeviceUse> &uses) {
    const QList<UsingApp> apps = appsOf(uses);
    QStringList sentences;
    for (const UsingApp &app : apps.mid(0, mostSentences))
        sentences.append(app.name + u" uses "_s + devicesOf(app.categories, u"and"_s) + u'.');
    if (const QList<UsingApp> others = apps.mid(mostSentences); !others.isEmpty()) {
        QList<MacRiskCategory> used;
        for (const UsingApp &app : others)
            take(app.categories, used);
        sentences.append((others.size() == 1 ? u"1 other application uses "_s
                                             : shownNumber(others.size()) + u" other applications use "_s) +
                         devicesOf(used, others.size() == 1 ? u"and"_s : u"or"_s) + u'.');
    }
    return sentences.join(u' ');
}

QString useSymbol(const QList<DeviceUse> &uses) {
    using enum MacRiskCategory;
    for (const auto &[category, symbol] :
         {std::pair{camera, u"camera.fill"_s}, std::pair{microphone, u"mic.fill"_s}}) {
        if (std::any_of(uses.cbegin(), uses.cend(),
                        [wanted = category](const DeviceUse &use) { return use.category == wanted; }))
            return symbol;
    }
    return u"rectangle.on.rectangle"_s;
}

} // namespace kestrin::app
