#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

/// Formats a value as one line of text with the type of every part, so that equal lines mean equal
/// values: `{CameraID: QString "c", StartTimestamp: qlonglong 5}`. A list is `[...]`, a list of
/// strings `QStringList [...]`, a null string `QString null`, an invalid value `invalid`.
/// Characters outside ASCII and control characters are written as \uXXXX.
QString describe(const QVariant &value);
