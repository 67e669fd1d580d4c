#pragma once

#include "Comparison.h"
#include "DifferencesModel.h"
#include "ReplayProcess.h"
#include "TrafficModel.h"
#include "TrafficSource.h"

namespace workbench {

/// The recording that the drawer shows in place of the live traffic. The name of its base class is
/// qualified, because qmllint finds no other one.
class OpenedRecording : public workbench::TrafficSource
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Use the property openedRecording of the workbench")
    /// Empty while no recording is open.
    Q_PROPERTY(QString file READ file NOTIFY changed)
    /// File name, name of the plug-in and time of the recording.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// The message on the first unusable line, with the number of others; empty if there is none.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// The differences from a plug-in or from another recording.
    Q_PROPERTY(workbench::DifferencesModel *differences READ differences CONSTANT)
    /// The name of the other side and the result or the error; empty before a comparison.
    Q_PROPERTY(QString result READ result NOTIFY compared)
    /// The numbers of compared inputs and outputs, and the result; empty before a comparison.
    Q_PROPERTY(QString summary READ summary NOTIFY compared)
    Q_PROPERTY(bool replaying READ isReplaying NOTIFY replayingChanged)
    /// The line of the first difference; 0 if there is none.
    Q_PROPERTY(int firstLine READ firstLine NOTIFY compared)
    /// Notes and bad lines, one per line.
    Q_PROPERTY(QStringList remarks READ remarks NOTIFY compared)

public:
    explicit OpenedRecording(QObject *parent = nullptr);

    QString file() const { return m_recording.file; }
    QString title() const;
    QString problem() const;
    DifferencesModel *differences() { return &m_differences; }
    QString result() const;
    QString summary() const;
    bool isReplaying() const { return m_replay.isRunning(); }
    int firstLine() const;
    QStringList remarks() const;

    /// Opens a file in place of the current one, which stays open after an error.
    /// @return an error message with file and line, or an empty text
    Q_INVOKABLE QString open(const QString &path);
    Q_INVOKABLE void close();
    /// Compares the recording with another file.
    /// @return an error message with file and line, or an empty text
    Q_INVOKABLE QString compareWith(const QString &path);
    /// Sets the paths of the workbench's program and of the plug-in's library for replay().
    void setReplayProgram(const QString &program, const QString &library);
    /// Starts a replay to a newly loaded plug-in; compared() follows.
    Q_INVOKABLE void replay();
    Q_INVOKABLE void stopReplay();
    /// Opens the file of a comparison with its differences.
    void open(const Comparison &comparison);
    /// @return the row of a line; for an unusable line the row before
    Q_INVOKABLE int rowOf(int line) const;

Q_SIGNALS:
    void changed();
    /// The differences have changed.
    void compared();
    void replayingChanged();

protected:
    Recording::Header header() const override;

private:
    void show(Recording recording);
    void setComparison(const std::optional<Comparison> &comparison);

    TrafficModel m_model;
    DifferencesModel m_differences;
    Recording m_recording;
    std::optional<Comparison> m_comparison;
    ReplayProcess m_replay;
    QString m_replayProgram;
    QString m_replayLibrary;
};

} // namespace workbench
