#pragma once

#include "TrafficModel.h"
#include "TrafficSource.h"

namespace workbench {

/// The recording that the drawer shows in place of the live traffic. The name of its base class is
/// qualified, because qmllint finds no other one.
class OpenedRecording : public workbench::TrafficSource
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, the bench's")
    /// Empty while no recording is open.
    Q_PROPERTY(QString file READ file NOTIFY changed)
    /// The file's name, the plug-in's and the time.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// The first line that can't be used, and how many follow; empty if all can be used.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    explicit OpenedRecording(QObject *parent = nullptr);

    QString file() const { return m_recording.file; }
    QString title() const;
    QString problem() const;

    /// Shows a file instead of the one before.
    /// @return the error, with file and line, or an empty text; after an error the recording before
    /// stays open
    Q_INVOKABLE QString open(const QString &path);
    Q_INVOKABLE void close();

Q_SIGNALS:
    void changed();

protected:
    Recording::Header header() const override { return m_recording.header; }

private:
    void show(Recording recording);

    TrafficModel m_model;
    Recording m_recording;
};

} // namespace workbench
