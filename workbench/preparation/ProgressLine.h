#pragma once

#include <QtCore/QObject>

namespace workbench {

class Preparation;

/// Writes how far a preparation is on one line of standard error, over and over, and at its end
/// what the user should know. Nothing when there is nothing to tell.
class ProgressLine : public QObject
{
    Q_OBJECT

public:
    /// @p preparation must outlive this object.
    explicit ProgressLine(const Preparation &preparation, QObject *parent = nullptr);

private:
    void printProgress();
    void printEnd();

    const Preparation &m_preparation;
    bool m_begun = false;
};

} // namespace workbench
