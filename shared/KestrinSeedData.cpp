#include "shared/KestrinSeedData.h"

using namespace Qt::StringLiterals;

namespace kestrin::shared::KestrinSeedData {

const QList<ProtectionDevice> &devices() {
    using enum ProtectionTone;
    static const QList<ProtectionDevice> list{
        {u"iphone"_s, u"iPhone"_s, u"Privacy Mode active"_s, u"iphone"_s, u"Active"_s, protected_},
        {u"ipad"_s, u"iPad"_s, u"Privacy Mode available"_s, u"ipad"_s, u"Ready"_s, protected_},
        {u"macbook"_s, u"MacBook Pro"_s, u"Mac app recommended"_s, u"laptopcomputer"_s, u"Connect Mac"_s,
         attention},
        {u"watch"_s, u"Apple Watch"_s, u"Quick toggle available"_s, u"applewatch"_s, u"Ready"_s, link},
    };
    return list;
}

const QList<ProtectedApp> &protectedApps() {
    static const QList<ProtectedApp> list;
    return list;
}

const QList<ModePreset> &modes() {
    static const QList<ModePreset> list{
        {u"sleep"_s, u"Sleep Mode"_s, u"Protects your quiet hours."_s, u"11:00 PM - 7:00 AM"_s,
         u"moon.fill"_s, true},
        {u"away"_s, u"Away Mode"_s, u"Keeps Privacy Mode on while you are away."_s, u"8:00 AM - 6:00 PM"_s,
         u"bag.fill"_s, true},
        {u"focus"_s, u"Focus Mode"_s, u"Limits selected apps while you focus."_s, u"9:00 PM - 11:00 PM"_s,
         u"target"_s, false},
        {u"travel"_s, u"Travel Mode"_s, u"Recommended protection while traveling."_s, u"Manual"_s,
         u"airplane"_s, false},
        {u"manual"_s, u"Manual Mode"_s, u"Turn on Privacy Mode directly whenever you need it."_s, u"Manual"_s,
         u"lock.fill"_s, true},
    };
    return list;
}

const QList<ActivityEvent> &activity() {
    using enum ProtectionTone;
    static const QList<ActivityEvent> list = [] {
        const QDateTime now = QDateTime::currentDateTime();
        return QList<ActivityEvent>{
            {u"schedule-off"_s, u"Privacy Mode turned off"_s, u"Sleep Mode ended"_s, u"9:40"_s, now,
             u"Schedule"_s, u"calendar"_s, attention},
            {u"privacy-on"_s, u"Privacy Mode turned on"_s, u"Changed on this iPhone"_s, u"9:34"_s, now,
             u"Protection"_s, u"checkmark.shield.fill"_s, protected_},
            {u"apps-updated"_s, u"App protection updated"_s, u"3 items changed"_s, u"9:30"_s, now,
             u"Protection"_s, u"checklist"_s, protected_},
            {u"access-ready"_s, u"Screen Time Access allowed"_s, u"Ready to choose apps"_s, u"9:28"_s, now,
             u"Setup"_s, u"key.fill"_s, protected_},
        };
    }();
    return list;
}

} // namespace kestrin::shared::KestrinSeedData
