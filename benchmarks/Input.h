// The keyboard and the mouse of the X server, moved by a program. Whoever has the keyboard's focus, or is
// under the pointer, gets what a person's hands would have given.
#pragma once

#include "benchmarks/XDisplay.h"

namespace kestrin::bench {

/// Key symbols of X.
enum class Key : std::uint32_t {
    space = 0x20,
    one = 0x31, ///< the other digits follow
    tab = 0xff09,
    escape = 0xff1b,
    pageUp = 0xff55,
    pageDown = 0xff56,
    end = 0xff57,
    home = 0xff50,
    control = 0xffe3,
};

/// The key of a digit from 1 to 9.
constexpr Key digit(int number) {
    return static_cast<Key>(static_cast<int>(Key::one) + number - 1);
}

/// The key of a small letter.
constexpr Key letter(char character) {
    return static_cast<Key>(character);
}

class Input {
  public:
    /// The display outlives this object.
    explicit Input(const XDisplay &display);

    void hold(Key key) { send(XCB_KEY_PRESS, code(key)); }
    void let(Key key) { send(XCB_KEY_RELEASE, code(key)); }
    void type(Key key) {
        hold(key);
        let(key);
    }
    void typeWithControl(Key key) {
        hold(Key::control);
        type(key);
        let(Key::control);
    }

    /// Moves the pointer to a place on the screen.
    void point(int x, int y);
    /// Turns the wheel by one notch.
    void turnWheel(bool down);

  private:
    std::uint8_t code(Key key) const;
    void send(std::uint8_t type, std::uint8_t detail);

    const XDisplay &m_display;
    std::uint8_t m_firstCode = 0;
    std::uint8_t m_symbolsPerCode = 0;
    std::vector<std::uint32_t> m_symbols;
};

} // namespace kestrin::bench
