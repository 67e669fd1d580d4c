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
    /// The file's name, the plug-in's and the time.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// The first line that can't be used, and how many follow; empty if all can be used.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// The differences from a plug-in or from another recording.
    Q_PROPERTY(workbench::DifferencesModel *differences READ differences CONSTANT)
    /// With what it was compared, and the result or the error; empty before.
    Q_PROPERTY(QString result READ result NOTIFY compared)
    /// The numbers of what was compared, and the result; empty before.
    Q_PROPERTY(QString summary READ summary NOTIFY compared)
    Q_PROPERTY(bool replaying READ isReplaying NOTIFY replayingChanged)
    /// The line of the first difference; 0: there is none.
    Q_PROPERTY(int firstLine READ firstLine NOTIFY compared)
    /// Notes and bad lines, a line each.
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

    /// Shows a file instead of the one before.
    /// @return the error, with file and line, or an empty text; after an error the recording before
    /// stays open
    Q_INVOKABLE QString open(const QString &path);
    Q_INVOKABLE void close();
    /// Compares it with another recording, which stays closed.
    /// @return the error, with file and line, or an empty text
    Q_INVOKABLE QString compareWith(const QString &path);
    /// The workbench's program and the plug-in's library for replay().
    void setReplayProgram(const QString &program, const QString &library);
    /// Plays the file to a newly loaded plug-in; compared() comes later.
    Q_INVOKABLE void replay();
    Q_INVOKABLE void stopReplay();
    /// Opens the file that was compared, with its differences.
    void open(const Comparison &comparison);
    /// The row of a line; of one that can't be used the row before.
    Q_INVOKABLE int rowOf(int line) const;

Q_SIGNALS:
    void changed();
    /// There are differences of another comparison, or none any more.
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
