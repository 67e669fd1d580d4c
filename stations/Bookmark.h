#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

namespace stations {

/// A bookmark of a station: a time range on a camera's recording, with texts.
struct Bookmark
{
    static constexpr qsizetype MaxLabelLength = 1'000;        ///< of identifiers, creator, group
    static constexpr qsizetype MaxDescriptionLength = 65'536; ///< all lengths are in UTF-16 units

    QString bookmarkID; ///< set by the station; empty until the bookmark is stored
    QString cameraID;
    QString locationID;
    qint64 start = 0; ///< milliseconds since 1970-01-01T00:00:00 UTC
    qint64 end = 0;   ///< in the same unit; not before the start
    QString description;
    QString creator;
    QString group;

    /// Reads the seven values that a client sends; ignores "BookmarkID".
    /// @return nullopt if a key is missing, a type is wrong or the bookmark has a defect
    static std::optional<Bookmark> fromRecord(const QVariantMap &record);

    /// @return the server record, without "BookmarkID" if the bookmark has none
    QVariantMap toRecord() const;

    /// @return the reason why stations reject this bookmark, as a message; empty for a valid one
    QString defect() const;
};

} // namespace stations
