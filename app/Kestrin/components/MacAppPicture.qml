import QtQuick

// The picture of an application, as the desktop's theme or a file has it.
Image {
    required property string name

    readonly property bool isThere: status === Image.Ready && implicitWidth > 1

    height: width
    visible: isThere
    fillMode: Image.PreserveAspectFit
    sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
    source: name === "" ? "" : "image://application/" + name
}
