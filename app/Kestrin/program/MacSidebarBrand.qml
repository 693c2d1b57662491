import QtQuick

Column {
    spacing: 12

    MacBrandLogo {
        width: 150
        height: 52
    }
}
