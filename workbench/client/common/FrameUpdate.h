#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

namespace workbench {

/// Combines requests into one signal just before the next frame is drawn. That frame shows the
/// changes of the signal's handlers.
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
