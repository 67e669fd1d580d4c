#pragma once

#include <QtCore/QDir>
#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickWindow>

namespace workbench {

class Transcript;

/// Takes the pictures of a picture tour and writes down which there are, a check for each.
class PictureTaker : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it")

public:
    /// The transcript is not owned and must outlive this object.
    PictureTaker(const QString &folder, Transcript &transcript, QObject *parent = nullptr);

    /// Item, popup or other object of that name in a window, or null.
    Q_INVOKABLE QObject *find(QQuickWindow *window, const QString &objectName) const;

    /// Writes what the window shows as window-NAME.png.
    Q_INVOKABLE void take(QQuickWindow *window, const QString &name);

    /// The state of that name was not reached in time; ends the tour.
    Q_INVOKABLE void giveUp(const QString &name);

Q_SIGNALS:
    void finished();

private:
    QDir m_folder;
    Transcript &m_transcript;
};

} // namespace workbench
