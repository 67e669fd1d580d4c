#pragma once

#include <QtCore/QVariant>

/// Bookmarks to measure with: made from a seed, the same for every contestant.
namespace data {

/// Bookmarks of @p count alarms and notes over four weeks on forty cameras of station "A", as the
/// server's records. Eight in a hundred mention a forklift.
QVariantList serverRecords(int count);

/// The names of the station and its cameras.
QVariantMap cameraNames();

/// A batch of @p count targets at five stations; every tenth occurs twice.
QVariantList batchTargets(int count);

QByteArray timeZone();

} // namespace data
