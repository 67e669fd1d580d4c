#include "PictureTaker.h"

#include "Screenshot.h"
#include "Transcript.h"

#include <QtQuick/QQuickItem>

namespace workbench {

namespace {

/// What a view makes for its rows has a parent among the items, and often none among the objects.
QObject *findItem(QQuickItem *item, const QString &objectName)
{
    if (item->objectName() == objectName)
        return item;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QObject *const found = findItem(child, objectName))
            return found;
    }
    return nullptr;
}

} // namespace

PictureTaker::PictureTaker(const QString &folder, Transcript &transcript, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
    , m_transcript(transcript)
{
    m_folder.mkpath(QStringLiteral("."));
}

QObject *PictureTaker::find(QQuickWindow *window, const QString &objectName) const
{
    QObject *const object = window->findChild<QObject *>(objectName);
    return object ? object : findItem(window->contentItem(), objectName);
}

void PictureTaker::take(QQuickWindow *window, const QString &name)
{
    const QString file = m_folder.filePath(QStringLiteral("window-%1.png").arg(name));
    const QString error = Screenshot::write(*window, file);
    m_transcript.printCheck(error.isEmpty(), error.isEmpty() ? file : error);
}

void PictureTaker::giveUp(const QString &name)
{
    m_transcript.printCheck(false, QStringLiteral("the window reaches the state \"%1\"").arg(name));
    Q_EMIT finished();
}

} // namespace workbench
