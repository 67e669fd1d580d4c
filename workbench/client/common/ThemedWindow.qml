import QtQuick
import QtQuick.Controls
import Client.Common

/// A window with the theme's colours.
ApplicationWindow {
    color: Theme.window
    font.pixelSize: Theme.normalText
    // Set each colour: controls do not notice changes inside a shared palette object.
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.surface
        alternateBase: Theme.raised
        text: Theme.text
        button: Theme.raised
        buttonText: Theme.text
        brightText: Theme.text
        highlight: Theme.accent
        highlightedText: Theme.accentText
        placeholderText: Theme.faintText
        toolTipBase: Theme.surface
        toolTipText: Theme.text
        light: Theme.dark ? "#3d4550" : "#ffffff"
        midlight: Theme.dark ? "#363d47" : "#f5f6f8"
        mid: Theme.line
        dark: Theme.dark ? "#14171b" : "#9aa3ae"
        shadow: Theme.dark ? "#0b0d0f" : "#5f6873"
        link: Theme.accent
        disabled {
            windowText: Theme.faintText
            text: Theme.faintText
            buttonText: Theme.faintText
        }
    }

    TipWidth {}
}
