// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

Rectangle {
    property alias image: wallpaper.image

    color: Qt.rgba(0.12, 0.12, 0.12, 1)

    PictureItem {
        id: wallpaper
        anchors.fill: parent
    }
}
