#pragma once

#include <QtCore/QObject>

namespace workbench {

class Preparation;

/// Prints the progress of a preparation on standard error, in one line that it overwrites, and then
/// the messages.
class ProgressLine : public QObject
{
    Q_OBJECT

public:
    /// @param preparation not owned; must outlive this object
    explicit ProgressLine(const Preparation &preparation, QObject *parent = nullptr);

private:
    void printProgress();
    void printEnd();

    const Preparation &m_preparation;
    bool m_begun = false;
};

} // namespace workbench
