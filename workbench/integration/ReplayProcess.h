#pragma once

#include "Comparison.h"

#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <optional>

namespace workbench {

/// Replays a recording in a process of its own: the plug-in of this process can't be loaded twice,
/// and a crash of the replayed one ends that process only.
class ReplayProcess : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Ends a replay that runs.
    ~ReplayProcess() override;
    Q_DISABLE_COPY_MOVE(ReplayProcess)

    /// @param program the workbench's
    /// @param library of the plug-in
    void start(const QString &program, const QString &library, const QString &file);
    void stop();
    bool isRunning() const { return m_process.has_value(); }

Q_SIGNALS:
    /// After start(), unless stop() came before. Of a replay that failed the comparison has the
    /// error.
    void finished(const workbench::Comparison &comparison);

private:
    void finish();

    QString m_file;
    std::optional<QTemporaryDir> m_folder; ///< of the report
    std::optional<QProcess> m_process;
};

} // namespace workbench
