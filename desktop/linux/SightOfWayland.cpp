#include "desktop/linux/SightOfWayland.h"

#include "desktop/sources/SourceWorkspace.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace engine;

namespace {

struct Words {
    QString why;
    QString remedy;
    Sight::Help help;
};

/// What the desktop calls itself decides on the words, and on nothing else.
Words wordsFor(const QStringList &desktops) {
    if (desktops.contains(u"KDE"_s, Qt::CaseInsensitive))
        return {u"Plasma does not let this copy of Kestrin see what runs"_s,
                u"Allow it with \"kestrinctl desktop enable\", or install the package."_s,
                Sight::Help::allow};
    return {u"This desktop does not tell programs what runs"_s,
            u"GNOME, KDE Plasma, sway and desktops with X11 let Kestrin see more."_s, Sight::Help::read};
}

} // namespace

Sight sightOfX11InWayland(const Sight &x11) {
    const bool seesNothing = x11.extent == Sight::Extent::none;
    const Words words = wordsFor(qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':'));
    return {.extent = seesNothing ? Sight::Extent::none : Sight::Extent::partial,
            .reason =
                words.why + (seesNothing ? u", so no running applications can be seen."_s
                                         : u", so only applications of the older kind, X11, can be seen."_s),
            .remedy = words.remedy,
            .help = words.help};
}

Sight sightOfX11InSilence(const Sight &x11) {
    if (x11.extent == Sight::Extent::none)
        return sightOfSilence();
    return {Sight::Extent::partial,
            u"The desktop does not answer, so only applications of the older kind, X11, can be seen."_s,
            {},
            {}};
}

} // namespace kestrin::desktop
