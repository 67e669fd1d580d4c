#pragma once

#include "Recording.h"
#include "SearchFilter.h"

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

#include <deque>

namespace workbench {

class TrafficModel;

/// Traffic that the drawer shows and saves: of this session or of an opened recording.
class TrafficSource : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The workbench creates them")
    Q_PROPERTY(workbench::TrafficModel *traffic READ traffic CONSTANT)

public:
    /// @param model not owned; may be constructed later, but before the first call of a method
    explicit TrafficSource(TrafficModel &model, QObject *parent = nullptr);

    TrafficModel *traffic() const { return &m_model; }

    /// Writes all entries to a recording.
    /// @return an error message with the file, or an empty text
    Q_INVOKABLE QString save(const QString &path) const;
    /// Like save(), but only the entries that a filter shows; the recording is marked incomplete if
    /// there are others.
    Q_INVOKABLE QString saveShown(const QString &path, const workbench::SearchFilter *filter) const;

protected:
    /// @return the header for a file with all entries
    virtual Recording::Header header() const = 0;

private:
    TrafficModel &m_model;
};

} // namespace workbench
