import QtQml

/// A line of the help: keys and what they do.
QtObject {
    required property string keys
    required property string what
}
