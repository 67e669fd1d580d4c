#include "PictureTaker.h"

#include "Screenshot.h"
#include "Transcript.h"
#include "WindowItems.h"

namespace workbench {

PictureTaker::PictureTaker(const QString &folder, Transcript &transcript, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
    , m_transcript(transcript)
{
}

QObject *PictureTaker::find(QQuickWindow *window, const QString &objectName) const
{
    return findInWindow(*window, objectName);
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
