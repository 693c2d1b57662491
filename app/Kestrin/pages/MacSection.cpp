#include "app/Kestrin/pages/MacSection.h"

using namespace Qt::StringLiterals;

namespace kestrin::app {

QList<SectionRow> sectionRows() {
    const auto row = [](MacSection section, const QString &title, const QString &icon) {
        return SectionRow{static_cast<int>(section), title, icon};
    };
    return {
        row(MacSection::Home, u"Home"_s, u"house.fill"_s),
        row(MacSection::Devices, u"Devices"_s, u"rectangle.connected.to.line.below"_s),
        row(MacSection::Apps, u"Apps"_s, u"checkmark.shield.fill"_s),
        row(MacSection::Schedule, u"Schedule"_s, u"calendar"_s),
        row(MacSection::Activity, u"Activity"_s, u"list.bullet.rectangle"_s),
        row(MacSection::Access, u"Access"_s, u"key.fill"_s),
        row(MacSection::Connect, u"Install & Connect"_s, u"link"_s),
    };
}

} // namespace kestrin::app
