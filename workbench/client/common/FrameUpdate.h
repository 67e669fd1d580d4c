#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

namespace workbench {

/// Joins any number of requests into one signal just before the next frame of its window is drawn:
/// what a handler changes is seen in that same frame.
class FrameUpdate : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

    Q_INVOKABLE void request() { polish(); }

Q_SIGNALS:
    void due();

protected:
    void updatePolish() override { Q_EMIT due(); }
};

} // namespace workbench
