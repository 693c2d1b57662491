#include "design/SymbolTable.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace kestrin::design {

namespace {

using enum SymbolDrawing::Kind;

// Sorted by name. CMakeLists.txt reads the second column to embed the drawings.
constexpr std::array drawings{
    SymbolDrawing{"airplane", "airplane-fill", Filled},
    SymbolDrawing{"applewatch", "smartwatch", Lines},
    SymbolDrawing{"arrow.clockwise", "arrow-clockwise", Lines},
    SymbolDrawing{"arrow.clockwise.circle.fill", "arrow-clockwise-circle-fill", Filled},
    SymbolDrawing{"arrow.right", "arrow-right", Lines},
    SymbolDrawing{"bag.fill", "bag-fill", Filled},
    SymbolDrawing{"book.closed.fill", "book-closed-fill", Filled},
    SymbolDrawing{"calendar", "calendar3", Lines, 0.94},
    SymbolDrawing{"camera.fill", "camera-fill", Filled},
    SymbolDrawing{"checklist", "list-check", Lines},
    SymbolDrawing{"checkmark.circle.fill", "check-circle-fill", Filled},
    SymbolDrawing{"checkmark.shield.fill", "checkmark-shield-fill", Filled},
    SymbolDrawing{"chevron.right", "chevron-right", Lines, 0.9},
    SymbolDrawing{"clock.fill", "clock-fill", Filled},
    SymbolDrawing{"doc.on.doc.fill", "doc-on-doc-fill", Filled},
    SymbolDrawing{"exclamationmark.shield.fill", "exclamationmark-shield-fill", Filled},
    SymbolDrawing{"exclamationmark.triangle.fill", "exclamation-triangle-fill", Filled},
    SymbolDrawing{"eye.fill", "eye-fill", Filled},
    SymbolDrawing{"globe", "globe", Lines},
    SymbolDrawing{"hand.raised.fill", "hand-raised-fill", Filled},
    SymbolDrawing{"house.fill", "house-fill", Filled},
    SymbolDrawing{"info.circle.fill", "info-circle-fill", Filled},
    SymbolDrawing{"ipad", "tablet", Lines},
    SymbolDrawing{"iphone", "phone", Lines},
    SymbolDrawing{"key.fill", "key-fill", Filled, 1.15},
    SymbolDrawing{"laptopcomputer", "laptop", Lines, 1.12},
    SymbolDrawing{"link", "link-45deg", Lines, 1.2},
    SymbolDrawing{"list.bullet.rectangle", "card-list", Lines},
    SymbolDrawing{"lock.fill", "lock-fill", Filled},
    SymbolDrawing{"macwindow", "window", Lines},
    SymbolDrawing{"mic.fill", "mic-fill", Filled},
    SymbolDrawing{"moon.fill", "moon-fill", Filled},
    SymbolDrawing{"pause.circle.fill", "pause-circle-fill", Filled},
    SymbolDrawing{"person.crop.circle", "person-circle", Lines},
    SymbolDrawing{"questionmark.circle.fill", "question-circle-fill", Filled},
    SymbolDrawing{"rectangle.connected.to.line.below", "rectangle-connected-to-line-below", Lines},
    SymbolDrawing{"rectangle.on.rectangle", "rectangle-on-rectangle", Lines},
    SymbolDrawing{"scope", "scope", Lines},
    SymbolDrawing{"shield", "shield", Lines},
    SymbolDrawing{"shield.checkered", "shield-checkered", Lines},
    SymbolDrawing{"sparkles", "stars", Filled},
    SymbolDrawing{"target", "bullseye", Lines},
    SymbolDrawing{"tray", "inbox", Lines},
    SymbolDrawing{"video.fill", "camera-video-fill", Filled, 1.05},
    SymbolDrawing{"wand.and.stars", "magic", Lines},
    SymbolDrawing{"waveform.path.ecg.rectangle", "waveform-path-ecg-rectangle", Lines},
    SymbolDrawing{"xmark.circle.fill", "x-circle-fill", Filled},
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
