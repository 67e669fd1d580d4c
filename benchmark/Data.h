#pragma once

#include <QtCore/QVariant>

/// Generates bookmarks from a fixed seed, so that every implementation has the same ones.
namespace data {

/// Returns @p count server records over four weeks on forty cameras of station "A". 8 % of the
/// descriptions have the word "Forklift".
QVariantList serverRecords(int count);

/// Returns the names of the station by relay path and of its cameras by camera key.
QVariantMap cameraNames();

/// Returns a batch of @p count targets at five stations; every tenth target occurs twice.
QVariantList batchTargets(int count);

QByteArray timeZone();

} // namespace data
