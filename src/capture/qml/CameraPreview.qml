// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

Item {
    id: view

    required property real radius
    // The room for it around the bubble; none without.
    required property real shadow

    // Soft, of ever larger and fainter sheets.
    Repeater {
        model: view.shadow > 0 && !bubble.isEmpty ? 8 : 0

        Rectangle {
            required property int index
            readonly property real reach: (view.shadow - 4) * index / 7

            anchors.fill: bubble
            anchors.margins: -reach
            anchors.topMargin: 3 - reach
            anchors.bottomMargin: -3 - reach
            radius: view.radius + reach
            color: Qt.rgba(0, 0, 0, 0.05)
        }
    }

    PictureItem {
        id: bubble
        objectName: "bubble"
        anchors.fill: parent
        anchors.margins: view.shadow
        radius: view.radius
        borderWidth: 3
        borderColor: Qt.rgba(1, 1, 1, 0.9)
    }
}
