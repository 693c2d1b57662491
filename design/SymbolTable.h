#pragma once

#include <QStringView>

#include <span>

namespace kestrin::design {

/// How a symbol of the product family is drawn on this desktop.
struct SymbolDrawing {
    enum class Kind {
        Lines,  ///< heavier weights have thicker lines
        Filled, ///< a shape, possibly with something cut out of it; the same in all weights
    };

    const char *name;    ///< the family's name, as records and pages say it
    const char *drawing; ///< file name without ".svg": in symbols/, else in bootstrap-icons
    Kind kind;
    double size = 1; ///< of the usual box, so that it looks as large as its neighbours
};

std::span<const SymbolDrawing> symbolTable();

/// Null for a name that is not in the table.
const SymbolDrawing *findSymbol(QStringView name);

} // namespace kestrin::design
