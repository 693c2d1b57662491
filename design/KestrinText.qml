import QtQuick
import KestrinDesignSystem

// A text, verbatim. Wraps unless `lineLimit` says otherwise; with a limit of one line it tightens and shrinks to
// `minimumScale` before it is cut. Sizes are in points, weights of KestrinWeight.
FittedText {
    id: root

    property alias color: words.color
    property alias horizontalAlignment: words.horizontalAlignment
    property bool heading: false
    // Said already by what it is part of.
    property bool silent: false

    implicitWidth: naturalWidth
    implicitHeight: lineLimit === 1 ? naturalHeight : words.implicitHeight

    Accessible.role: heading ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: silent

    label: words

    Text {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        transformOrigin: Item.Left
        textFormat: Text.PlainText
        // Said, because otherwise the text's own direction decides.
        horizontalAlignment: Text.AlignLeft
        renderType: Text.NativeRendering
        color: KestrinColors.textPrimary
    }
}
