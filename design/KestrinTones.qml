pragma Singleton

import QtQuick
import KestrinDesignSystem

// The colours of a tone, for bindings: both follow the appearance.
QtObject {
    function color(tone: int): color {
        return KestrinColors.toneColors[tone];
    }

    function softBackground(tone: int): color {
        return KestrinColors.toneSoftBackgrounds[tone];
    }
}
