#include "runtime/ScheduleOutlook.h"

#include "runtime/StatusSummaries.h"

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

QString ScheduleOutlook::text() const {
    if (!wanted)
        return u"No schedule switches Privacy Mode. It stays as you set it."_s;
    QString now = u"No schedule is active right now, which keeps Privacy Mode off."_s;
    if (*wanted)
        now = active.join(u" and "_s) + (active.size() == 1 ? u" keeps"_s : u" keep"_s) +
              u" Privacy Mode on right now."_s;
    if (today.isEmpty())
        return now + u" It stays so until midnight."_s;
    QString switches;
    for (qsizetype i = 0; i < today.size(); ++i) {
        if (i > 0)
            switches += i + 1 < today.size() ? u", "_s : u" and "_s;
        switches += (today.at(i).on ? u"on at "_s : u"off at "_s) + timeOfDayLabelFor(today.at(i).time);
    }
    return now + u" Later today it goes "_s + switches + u'.';
}

} // namespace kestrin::runtime
