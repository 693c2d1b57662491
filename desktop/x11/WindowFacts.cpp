#include "desktop/x11/WindowFacts.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <limits>

namespace kestrin::desktop {

namespace {

QString decoded(QByteArrayView bytes) {
    // Without state, what is cut off at the end is an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

QByteArrayView upToNul(QByteArrayView bytes) {
    return bytes.first(std::find(bytes.cbegin(), bytes.cend(), '\0') - bytes.cbegin());
}

} // namespace

PropertyItems propertyItems(const RawProperty &property, quint32 type) {
    PropertyItems items;
    if (type == 0 || property.type != type || property.format != 32)
        return items;
    items.resize(property.bytes.size() / 4);
    if (!items.isEmpty())
        std::memcpy(items.data(), property.bytes.data(), static_cast<std::size_t>(items.size()) * 4);
    return items;
}

QString propertyText(const RawProperty &property) {
    return property.format == 8 ? decoded(upToNul(property.bytes)) : QString();
}

quint32 propertyWindow(const RawProperty &property) {
    const PropertyItems items = propertyItems(property, core_atoms::window);
    return items.isEmpty() ? 0 : items.first();
}

void WindowFacts::takeWindowClass(const RawProperty &property) {
    if (property.format != 8)
        return;
    const QByteArrayView instance = upToNul(property.bytes);
    claims.instanceName = decoded(instance);
    if (instance.size() < property.bytes.size())
        claims.className = decoded(upToNul(property.bytes.sliced(instance.size() + 1)));
}

void WindowFacts::takeWindowType(const RawProperty &property, const X11Atoms &atoms) {
    const quint32 shown[] = {atoms.typeNormal, atoms.typeDialog};
    const quint32 notShown[] = {atoms.typeDesktop,      atoms.typeDock,      atoms.typeToolbar,
                                atoms.typeMenu,         atoms.typeUtility,   atoms.typeSplash,
                                atoms.typeDropdownMenu, atoms.typePopupMenu, atoms.typeTooltip,
                                atoms.typeNotification, atoms.typeCombo,     atoms.typeDragAndDrop};
    // Clients list their types by preference; private ones of some toolkit come before those that all know.
    for (const quint32 type : propertyItems(property, core_atoms::atom)) {
        if (std::find(std::begin(shown), std::end(shown), type) != std::end(shown))
            return;
        if (std::find(std::begin(notShown), std::end(notShown), type) != std::end(notShown)) {
            hasShownType = false;
            return;
        }
    }
}

void WindowFacts::takeWindowState(const RawProperty &property, const X11Atoms &atoms) {
    skipsTaskbar = propertyItems(property, core_atoms::atom).contains(atoms.skipTaskbar);
}

void WindowFacts::takeProtocols(const RawProperty &property, const X11Atoms &atoms) {
    takesPartInClosing = propertyItems(property, core_atoms::atom).contains(atoms.wmDeleteWindow);
}

void WindowFacts::takeProcess(const RawProperty &property) {
    const PropertyItems items = propertyItems(property, core_atoms::cardinal);
    if (!items.isEmpty() && items.first() <= quint32{std::numeric_limits<qint32>::max()})
        claimedProcess = static_cast<qint32>(items.first());
}

bool isIconic(const RawProperty &property, const X11Atoms &atoms) {
    constexpr quint32 iconicState = 3;
    const PropertyItems items = propertyItems(property, atoms.wmState);
    return !items.isEmpty() && items.first() == iconicState;
}

bool isSameMachine(const QString &clientMachine, const QString &hostName) {
    if (clientMachine.isEmpty() || hostName.isEmpty())
        return false;
    if (clientMachine.contains(u'.') == hostName.contains(u'.'))
        return clientMachine.compare(hostName, Qt::CaseInsensitive) == 0;
    const bool clientIsQualified = clientMachine.contains(u'.');
    const QStringView qualified = clientIsQualified ? clientMachine : hostName;
    const QStringView plain = clientIsQualified ? hostName : clientMachine;
    return qualified.first(qualified.indexOf(u'.')).compare(plain, Qt::CaseInsensitive) == 0;
}

} // namespace kestrin::desktop
