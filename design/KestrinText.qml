import QtQuick
import KestrinDesignSystem

// A text, verbatim. Wraps unless `lineLimit` says otherwise; with a limit of one line it tightens and shrinks to
// `minimumScale` before it is cut. Sizes are in points, weights of KestrinWeight.
FittedText {
    id: root

    property alias color: words.color
    property alias horizontalAlignment: words.horizontalAlignment
    property bool heading: false
    // Between lines, on top of the font's own.
    property real lineSpacing: 0
    // Said already by what it is part of.
    property bool silent: false

    implicitWidth: naturalWidth
    implicitHeight: lineLimit === 1 ? naturalHeight : words.implicitHeight

    Accessible.role: heading ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: silent

    Text {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        transformOrigin: Item.Left
        width: root.fittedWidth
        scale: root.scaleFactor
        font: root.fittedFont
        textFormat: Text.PlainText
        wrapMode: root.lineLimit === 1 ? Text.NoWrap : Text.Wrap
        elide: Text.ElideRight
        maximumLineCount: root.lineLimit > 0 ? root.lineLimit : undefined
        lineHeightMode: root.lineSpacing > 0 ? Text.FixedHeight : Text.ProportionalHeight
        lineHeight: root.lineSpacing > 0 ? root.naturalHeight + root.lineSpacing : 1
        // Said, because otherwise the text's own direction decides.
        horizontalAlignment: Text.AlignLeft
        // The sharpest, unless it is scaled.
        renderType: root.scaleFactor < 1 ? Text.QtRendering : Text.NativeRendering
        color: KestrinColors.textPrimary
        text: root.directedText
    }
}
