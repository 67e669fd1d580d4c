#pragma once

#include <QtCore/QString>

class QObject;
class QQuickWindow;

namespace workbench {

/// Item, popup or other object of that name in a window, or null.
QObject *findInWindow(QQuickWindow &window, const QString &objectName);

} // namespace workbench
