// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Item {
    id: view

    required property QtObject model
    required property size plateSize

    Rectangle {
        anchors.centerIn: parent
        width: view.plateSize.width
        height: view.plateSize.height
        radius: width / 2
        color: Qt.rgba(0.08, 0.08, 0.1, 0.72)
        border.color: Qt.rgba(1, 1, 1, 0.12)

        Text {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: -10
            text: view.model.count
            font.pixelSize: 84
            font.weight: Font.DemiBold
            color: Qt.rgba(1, 1, 1, 0.85)
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 26
            text: "Space to skip"
            font.pixelSize: 12
            font.weight: Font.Medium
            color: Qt.rgba(1, 1, 1, 0.55)
        }
    }
}
