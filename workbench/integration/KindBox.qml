import QtQuick.Controls

/// Whether entries of some kinds are shown.
CheckBox {
    required property var kinds
    signal wanted(var kinds, bool shown)

    objectName: "show-" + kinds[0]
    checked: true
    onToggled: wanted(kinds, checked)
}
