import QtQuick
import KestrinDesignSystem

// A text, verbatim. Wraps unless `lineLimit` says otherwise; with a limit of one line it tightens and shrinks to
// `minimumScale` before it is cut. Sizes are in points, weights of KestrinWeight.
FittedText {
    id: root

    property color color: KestrinColors.textPrimary
    property int horizontalAlignment: Text.AlignLeft
    // Between lines, on top of the font's own.
    property real lineSpacing: 0
    property bool heading: false
    // Said already by what it is part of.
    property bool silent: false

    implicitWidth: naturalWidth
    implicitHeight: lineLimit === 1 ? naturalHeight : label.implicitHeight

    Accessible.role: heading ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: silent

    Text {
        id: label

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: root.fittedWidth
        scale: root.scaleFactor
        transformOrigin: Item.Left
        text: root.text
        textFormat: Text.PlainText
        font: root.fittedFont
        color: root.color
        horizontalAlignment: root.horizontalAlignment
        wrapMode: root.lineLimit === 1 ? Text.NoWrap : Text.Wrap
        maximumLineCount: root.lineLimit > 0 ? root.lineLimit : 2147483647
        elide: root.lineLimit > 0 ? Text.ElideRight : Text.ElideNone
        lineHeightMode: root.lineSpacing > 0 ? Text.FixedHeight : Text.ProportionalHeight
        lineHeight: root.lineSpacing > 0 ? root.naturalHeight + root.lineSpacing : 1
        // The sharpest, unless it is scaled.
        renderType: root.scaleFactor < 1 ? Text.QtRendering : Text.NativeRendering
        Accessible.ignored: true
    }
}
