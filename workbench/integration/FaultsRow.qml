import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// Edits the faults of one station, or of all stations.
Flow {
    id: row

    readonly property FaultsModel faults: ListView.view.model as FaultsModel
    required property int index
    required property string name
    required property bool connected
    required property string order
    required property int delay
    required property bool doubled
    required property string code
    required property string payload

    function set(role, value) {
        faults.setData(faults.index(index, 0), value, role);
    }

    width: ListView.view.width
    spacing: Theme.gap

    CheckBox {
        objectName: "connected"
        width: 190
        text: row.name
        font.bold: row.index === 0
        enabled: row.faults.command === "" // not a setting for one command
        checked: row.connected
        onToggled: row.set(FaultsModel.ConnectedRole, checked)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Connection of %1; clear it to reject its commands").arg(row.name)
    }
    SpinBox {
        objectName: "delay"
        width: 110
        from: 0
        to: 2147483647 // as in a file of faults
        stepSize: 500
        editable: true
        value: row.delay
        onValueModified: row.set(FaultsModel.DelayRole, value)
        Accessible.name: qsTr("Delay of %1, in milliseconds").arg(row.name)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Delay of answers in milliseconds, for the order \"in order\"")
    }
    ComboBox {
        width: 110
        model: row.faults.orders()
        currentIndex: model.indexOf(row.order)
        onActivated: row.set(FaultsModel.OrderRole, currentText)
        Accessible.name: qsTr("Answers of %1").arg(row.name)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Order of the answers; lost: no answer comes; rejected: the host rejects the commands")
    }
    CheckBox {
        width: 70
        text: qsTr("twice")
        checked: row.doubled
        onToggled: row.set(FaultsModel.DoubledRole, checked)
        Accessible.name: qsTr("Answers of %1 come twice").arg(row.name)
    }
    TextField {
        objectName: "code"
        width: 90
        placeholderText: qsTr("code")
        text: row.code
        onEditingFinished: row.set(FaultsModel.CodeRole, text)
        Accessible.name: qsTr("Failure code of %1").arg(row.name)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Every command fails with this code; leave it empty for none")
    }
    ComboBox {
        width: 130
        model: row.faults.payloads()
        currentIndex: model.indexOf(row.payload)
        displayText: currentText || qsTr("right payload")
        onActivated: row.set(FaultsModel.PayloadRole, currentText)
        Accessible.name: qsTr("Payload of answers of %1").arg(row.name)
    }
}
