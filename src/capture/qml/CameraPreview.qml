// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Tessaloom.Capture

PictureItem {
    borderWidth: 3
    borderColor: Qt.rgba(1, 1, 1, 0.9)
}
