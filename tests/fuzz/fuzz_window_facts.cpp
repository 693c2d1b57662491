// What windows tell about themselves.

#include "engine/workspace/x11/WindowFacts.h"
#include "tests/fuzz/Fuzzing.h"

#include <cstring>

using namespace kestrin;
using namespace kestrin::fuzzing;

namespace {

constexpr X11Atoms atoms{.utf8String = 100,
                         .wmState = 101,
                         .wmDeleteWindow = 102,
                         .skipTaskbar = 103,
                         .typeNormal = 104,
                         .typeDock = 105};

/// A property that lives as long as its bytes. Types, formats and items are often those that mean something.
struct AnyProperty : RawProperty {
    explicit AnyProperty(FuzzedDataProvider &input) {
        type = input.PickValueInArray({quint32{0}, core_atoms::atom, core_atoms::cardinal, core_atoms::window,
                                       atoms.utf8String, atoms.wmState});
        format = input.PickValueInArray({quint8{0}, quint8{8}, quint8{16}, quint8{32}});
        // One byte before them, so that items do not stand where the processor likes them.
        storage = '?' + QByteArray::fromStdString(input.ConsumeRandomLengthString(64));
        while (input.ConsumeBool()) {
            const quint32 item = input.ConsumeIntegralInRange<quint32>(98, 108);
            storage.append(reinterpret_cast<const char *>(&item), sizeof item);
        }
        bytes = QByteArrayView(storage).sliced(1);
    }

    bool hasItem(quint32 wantedType, quint32 wanted) const {
        bool found = false;
        for (qsizetype at = 0; at + 4 <= bytes.size(); at += 4)
            found = found || std::memcmp(bytes.data() + at, &wanted, 4) == 0;
        return found && type == wantedType && format == 32;
    }

    QByteArray storage;
};

void checkFacts(const AnyProperty &property) {
    WindowFacts facts;
    facts.takeWindowClass(property);
    require(property.format == 8 || facts == WindowFacts{}, "a class is text");
    require(!facts.instanceName.contains(QChar()) && !facts.className.contains(QChar()),
            "texts end at their NUL");

    facts = {};
    facts.takeWindowState(property, atoms);
    facts.takeProtocols(property, atoms);
    require(facts.skipsTaskbar == property.hasItem(core_atoms::atom, atoms.skipTaskbar),
            "who skips the task bar says so");
    require(facts.takesPartInClosing == property.hasItem(core_atoms::atom, atoms.wmDeleteWindow),
            "who takes part in closing says so");
    facts.takeWindowType(property, atoms);
    require(facts.hasShownType || property.type == core_atoms::atom, "a type is an atom");
    facts.takeProcess(property);
    require(facts.claimedProcess >= 0, "no process has a negative number");

    require(!propertyText(property).contains(QChar()), "a text ends at its NUL");
    const quint32 window = propertyWindow(property);
    require(window == 0 || property.hasItem(core_atoms::window, window), "a window is one of the items");
    require(!isIconic(property, atoms) || property.hasItem(atoms.wmState, 3), "who is minimised says so");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const QString first = anyText(input, 32).remove(QChar());
    const QString second = anyText(input, 32).remove(QChar());
    require(isSameMachine(first, second) == isSameMachine(second, first), "machines are the same both ways");
    require(isSameMachine(first, first) == !first.isEmpty(), "every machine with a name is itself");
    const QByteArray written = first.toUtf8() + '\0' + second.toUtf8();
    WindowFacts facts;
    facts.takeWindowClass({atoms.utf8String, 8, written});
    require(facts.instanceName == first && facts.className == second, "a class reads as it was written");
    while (input.remaining_bytes() > 0)
        checkFacts(AnyProperty(input));
    return 0;
}
