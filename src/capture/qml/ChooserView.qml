// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

Item {
    id: view

    property alias image: screen.image
    required property QtObject model
    required property int columns
    required property size card
    required property size picture
    required property size sheet

    signal picked(int index)
    signal cancelled

    PictureItem {
        id: screen
        anchors.fill: parent
    }
    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0.02, 0.02, 0.05, 0.5)
    }
    MouseArea {
        anchors.fill: parent
        onClicked: view.cancelled()
    }

    // A soft shadow, of ever larger and fainter sheets.
    Repeater {
        model: 10

        Rectangle {
            required property int index

            anchors.centerIn: sheet
            anchors.verticalCenterOffset: 6
            width: sheet.width + 4 * index
            height: sheet.height + 4 * index
            radius: sheet.radius + 2 * index
            color: Qt.rgba(0, 0, 0, 0.035)
        }
    }

    Rectangle {
        id: sheet

        anchors.centerIn: parent
        width: view.sheet.width
        height: view.sheet.height
        radius: 18
        color: Qt.rgba(0.09, 0.09, 0.12, 0.9)
        border.color: Qt.rgba(1, 1, 1, 0.12)

        MouseArea {
            anchors.fill: parent
        }

        Column {
            x: 30
            y: 18
            spacing: 3

            Text {
                text: "What do you want to record?"
                font.pixelSize: 17
                font.weight: Font.DemiBold
                color: Qt.rgba(1, 1, 1, 0.95)
            }
            Text {
                text: "A display, or a window by itself, also while others cover it"
                font.pixelSize: 12
                color: Qt.rgba(1, 1, 1, 0.6)
            }
        }

        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 20
            width: cancelText.implicitWidth + 28
            height: 30
            radius: 8
            color: Qt.rgba(1, 1, 1, cancelArea.pressed ? 0.22 : cancelArea.containsMouse ? 0.16 : 0.09)

            Text {
                id: cancelText
                anchors.centerIn: parent
                text: "Cancel"
                font.pixelSize: 13
                font.weight: Font.Medium
                color: Qt.rgba(1, 1, 1, 0.9)
            }
            MouseArea {
                id: cancelArea
                anchors.fill: parent
                hoverEnabled: true
                onClicked: view.cancelled()
            }
        }

        GridView {
            id: grid

            anchors.horizontalCenter: parent.horizontalCenter
            y: 64
            width: view.columns * view.card.width
            height: parent.height - y - 42
            cellWidth: view.card.width
            cellHeight: view.card.height
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            model: view.model
            currentIndex: view.model.current
            highlightMoveDuration: 120

            delegate: ChooserCard {
                width: view.card.width
                height: view.card.height
                pictureRoom: view.picture
                isCurrent: GridView.isCurrentItem
                onClicked: view.picked(index)
            }
        }

        // How far the cards are scrolled.
        Rectangle {
            visible: grid.interactive
            anchors.right: parent.right
            anchors.rightMargin: 7
            y: grid.y + grid.visibleArea.yPosition * grid.height
            width: 5
            height: grid.visibleArea.heightRatio * grid.height
            radius: 2.5
            color: Qt.rgba(1, 1, 1, 0.28)
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 14
            text: "Arrows to move    Enter or click to record    Esc to cancel"
            font.pixelSize: 12
            color: Qt.rgba(1, 1, 1, 0.55)
        }
    }
}
