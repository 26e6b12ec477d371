// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

Item {
    id: view

    property alias image: screen.image
    property point start
    property point current
    property bool dragged: false
    readonly property rect selection: dragged ? Qt.rect(Math.min(start.x, current.x), Math.min(start.y, current.y),
                                                        Math.abs(current.x - start.x), Math.abs(current.y - start.y))
                                              : Qt.rect(0, 0, 0, 0)
    readonly property color dimming: Qt.rgba(0, 0, 0, 0.32)

    signal released(point from, point to)

    PictureItem {
        id: screen
        anchors.fill: parent
    }

    // The dimming lies around the selection: above, below, left and right of it.
    Rectangle {
        width: view.width
        height: view.selection.top
        color: view.dimming
    }
    Rectangle {
        y: view.selection.bottom
        width: view.width
        height: view.height - y
        color: view.dimming
    }
    Rectangle {
        y: view.selection.top
        width: view.selection.left
        height: view.selection.height
        color: view.dimming
    }
    Rectangle {
        x: view.selection.right
        y: view.selection.top
        width: view.width - x
        height: view.selection.height
        color: view.dimming
    }

    Rectangle {
        visible: view.dragged
        x: view.selection.x
        y: view.selection.y
        width: view.selection.width
        height: view.selection.height
        color: "transparent"
        border.width: 1.5
        border.color: Qt.rgba(1, 1, 1, 0.95)
    }

    Rectangle {
        readonly property bool fitsBelow: view.selection.bottom + 8 + height < view.height

        visible: view.dragged
        x: Math.max(0, Math.min(view.selection.x, view.width - width))
        y: fitsBelow ? view.selection.bottom + 8 : view.selection.bottom - height - 8
        width: size.implicitWidth + 12
        height: size.implicitHeight + 6
        radius: 4
        color: Qt.rgba(0, 0, 0, 0.7)

        Text {
            id: size
            anchors.centerIn: parent
            text: Math.round(view.selection.width) + " × " + Math.round(view.selection.height)
            font.family: "monospace"
            font.pixelSize: 12
            color: "white"
        }
    }

    Rectangle {
        visible: !view.dragged
        anchors.centerIn: parent
        width: hint.implicitWidth + 28
        height: hint.implicitHeight + 16
        radius: 7
        color: Qt.rgba(0, 0, 0, 0.6)

        Text {
            id: hint
            anchors.centerIn: parent
            text: "Drag to select an area.  Esc or click to cancel."
            font.pixelSize: 13
            color: Qt.rgba(1, 1, 1, 0.85)
        }
    }

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.CrossCursor
        onPressed: mouse => view.start = view.current = Qt.point(mouse.x, mouse.y)
        onPositionChanged: mouse => {
            view.current = Qt.point(mouse.x, mouse.y);
            view.dragged = true;
        }
        onReleased: mouse => view.released(view.start, Qt.point(mouse.x, mouse.y))
    }
}
