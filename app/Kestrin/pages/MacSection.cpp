#include "app/Kestrin/pages/MacSection.h"

using namespace Qt::StringLiterals;

namespace kestrin::app {

QList<PageRow> sectionRows() {
    const auto row = [](const QString &title, const QString &icon) {
        return PageRow{.id = title, .title = title, .icon = icon};
    };
    return {
        row(u"Home"_s, u"house.fill"_s),
        row(u"Devices"_s, u"rectangle.connected.to.line.below"_s),
        row(u"Apps"_s, u"checkmark.shield.fill"_s),
        row(u"Schedule"_s, u"calendar"_s),
        row(u"Activity"_s, u"list.bullet.rectangle"_s),
        row(u"Access"_s, u"key.fill"_s),
        row(u"Install & Connect"_s, u"link"_s),
    };
}

} // namespace kestrin::app
