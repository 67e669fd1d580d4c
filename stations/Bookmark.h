#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

namespace workbench {

/// One marked stretch of a camera's recording, as a station keeps it.
struct Bookmark
{
    static constexpr qsizetype MaxLabelLength = 1'000;        ///< identifiers, creator, group
    static constexpr qsizetype MaxDescriptionLength = 65'536; ///< UTF-16 units, as all lengths

    QString bookmarkID; ///< given by the station; empty until the bookmark is stored
    QString cameraID;
    QString locationID;
    qint64 start = 0; ///< milliseconds since 1970-01-01T00:00:00 UTC
    qint64 end = 0;   ///< same unit, not before the start
    QString description;
    QString creator;
    QString group;

    /// Reads the seven values that a client sends, all of which must be there; a "BookmarkID" is
    /// not read. Nothing when a key is missing, a type is wrong or the bookmark has a defect.
    static std::optional<Bookmark> fromRecord(const QVariantMap &record);

    /// The server record; without "BookmarkID" as long as the bookmark has none.
    QVariantMap toRecord() const;

    /// Why no station would store this bookmark, in words; empty when there is no reason.
    QString defect() const;
};

} // namespace workbench
