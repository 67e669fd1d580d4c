#pragma once

#include "Comparison.h"

#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <optional>

namespace workbench {

/// Replays a recording in a separate process, because a plug-in can't be loaded twice in a process,
/// and a crash of the replayed plug-in must not end this program.
class ReplayProcess : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Ends a running replay.
    ~ReplayProcess() override;
    Q_DISABLE_COPY_MOVE(ReplayProcess)

    /// Starts a replay; ends a running one.
    /// @param program path of the workbench
    /// @param library path of the plug-in
    /// @param file    the recording
    void start(const QString &program, const QString &library, const QString &file);
    void stop();
    bool isRunning() const { return m_process.has_value(); }

Q_SIGNALS:
    /// Emitted once after start(), unless stop() is called before. If the replay failed, the
    /// comparison has the error.
    void finished(const workbench::Comparison &comparison);

private:
    void finish();

    QString m_file;
    std::optional<QTemporaryDir> m_folder; ///< contains the report
    std::optional<QProcess> m_process;
};

} // namespace workbench
