#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

/// A value as one line of text that shows the type of every part, so that comparing two lines
/// compares both: `{CameraID: QString "c", StartTimestamp: qlonglong 5}`. A list is `[...]`, a
/// list of strings `QStringList [...]`, a null string `QString null`, no value `invalid`.
/// Characters outside ASCII and control characters show as \uXXXX.
QString describe(const QVariant &value);
