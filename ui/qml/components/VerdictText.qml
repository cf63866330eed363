import QtQuick
import QtQuick.Layouts

// YES or NO, as large as nothing else.
AppText {
    font.pixelSize: Theme.verdictSize
    font.family: Theme.roundedFamily
    font.weight: Font.Black
    Layout.fillWidth: true
}
