// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

Item {
    id: card

    required property int index
    required property string title
    required property string detail
    required property bool isDisplay
    required property var picture
    required property size pictureSize
    required property bool isGone
    property size pictureRoom
    property bool isCurrent: false
    readonly property color accent: "#8b93ff"

    signal clicked

    Rectangle {
        anchors.fill: parent
        anchors.margins: 4
        radius: 13
        color: card.isCurrent ? Qt.rgba(0.545, 0.576, 1, 0.16) : Qt.rgba(1, 1, 1, area.containsMouse ? 0.08 : 0.03)
        border.width: card.isCurrent ? 2 : 1
        border.color: card.isCurrent ? card.accent : Qt.rgba(1, 1, 1, area.containsMouse ? 0.3 : 0.07)
    }

    Rectangle {
        id: well

        x: (parent.width - width) / 2
        y: x
        width: card.pictureRoom.width
        height: card.pictureRoom.height
        radius: 8
        color: Qt.rgba(0, 0, 0, 0.35)

        PictureItem {
            anchors.centerIn: parent
            opacity: card.isGone ? 0.15 : 1
            width: card.pictureSize.width
            height: card.pictureSize.height
            image: card.picture
            radius: 5
        }
    }

    Row {
        anchors.left: well.left
        anchors.right: well.right
        anchors.top: well.bottom
        anchors.leftMargin: 2
        anchors.topMargin: 10
        spacing: 10

        // A display on its foot, or a window with its title.
        Item {
            id: sign
            width: 20
            height: 16
            y: 9
            opacity: 0.75

            Rectangle {
                width: 20
                height: card.isDisplay ? 13 : 16
                radius: 3
                color: "transparent"
                border.width: 1.5
                border.color: "white"
            }
            Rectangle {
                x: card.isDisplay ? 5 : 2
                y: card.isDisplay ? 14.5 : 4
                width: card.isDisplay ? 10 : 16
                height: 1.5
                color: "white"
            }
        }

        Column {
            width: parent.width - sign.width - parent.spacing
            spacing: 2

            Text {
                width: parent.width
                text: card.title
                textFormat: Text.PlainText
                elide: Text.ElideMiddle
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Qt.rgba(1, 1, 1, card.isGone ? 0.4 : 0.94)
            }
            Text {
                width: parent.width
                text: card.detail
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.pixelSize: 12
                color: Qt.rgba(1, 1, 1, 0.6)
            }
        }
    }

    MouseArea {
        id: area
        anchors.fill: parent
        anchors.margins: 4
        hoverEnabled: true
        onClicked: card.clicked()
    }
}
