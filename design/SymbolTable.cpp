#include "design/SymbolTable.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace kestrin::design {

namespace {

using enum SymbolDrawing::Kind;

// Made of Symbols.cmake.
constexpr std::array drawings{
#include "design/SymbolRows.inc"
};

} // namespace

std::span<const SymbolDrawing> symbolTable() {
    return drawings;
}

const SymbolDrawing *findSymbol(QStringView name) {
    const auto row = std::ranges::find_if(
        drawings, [name](const SymbolDrawing &drawing) { return name == QLatin1StringView(drawing.name); });
    return row == drawings.end() ? nullptr : &*row;
}

} // namespace kestrin::design
