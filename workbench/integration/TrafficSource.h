#pragma once

#include "Recording.h"
#include "SearchFilter.h"

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

#include <deque>

namespace workbench {

class TrafficModel;

/// Traffic that the drawer shows and saves: that of this session, or that of an opened recording.
class TrafficSource : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The workbench creates them")
    Q_PROPERTY(workbench::TrafficModel *traffic READ traffic CONSTANT)

public:
    /// @param model not owned, and not used before traffic() or save() is called
    explicit TrafficSource(TrafficModel &model, QObject *parent = nullptr);

    TrafficModel *traffic() const { return &m_model; }

    /// Writes all entries to a file, for a replay.
    /// @return the error, or an empty text
    Q_INVOKABLE QString save(const QString &path) const;
    /// As save(), with the entries that a filter of the traffic shows. The file notes that others
    /// are missing.
    Q_INVOKABLE QString saveShown(const QString &path, const workbench::SearchFilter *filter) const;

protected:
    /// @return the header for a file with all entries
    virtual Recording::Header header() const = 0;

private:
    TrafficModel &m_model;
};

} // namespace workbench
