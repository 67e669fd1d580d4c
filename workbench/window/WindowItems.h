#pragma once

#include <QtCore/QString>

class QObject;
class QQuickWindow;

namespace workbench {

/// @return the item, popup or other object with this name in a window, or null
QObject *findInWindow(QQuickWindow &window, const QString &objectName);

} // namespace workbench
