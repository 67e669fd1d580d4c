#pragma once

#include <QtCore/QDir>
#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickWindow>

namespace workbench {

class Transcript;

/// Takes the pictures of a picture tour and adds a check for each to the transcript.
class PictureTaker : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program creates it")

public:
    /// @param folder     is created if necessary
    /// @param transcript not owned; must outlive this object
    PictureTaker(const QString &folder, Transcript &transcript, QObject *parent = nullptr);

    /// @return the item, popup or other object with this name in a window, or null
    Q_INVOKABLE QObject *find(QQuickWindow *window, const QString &objectName) const;

    /// Writes a picture of the window to window-NAME.png.
    Q_INVOKABLE void take(QQuickWindow *window, const QString &name);

    /// Adds a failed check for a state that the window did not reach, and ends the tour.
    Q_INVOKABLE void giveUp(const QString &name);

Q_SIGNALS:
    void finished();

private:
    QDir m_folder;
    Transcript &m_transcript;
};

} // namespace workbench
