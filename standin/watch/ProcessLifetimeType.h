#pragma once

#include <QtCore/QMetaType>

/// Returns the same type with a description in Qt's own libraries. On Windows a plug-in's library
/// contains the types of its methods and signals; a value of such a type is invalid once the
/// library is unloaded.
inline QMetaType processLifetimeType(QMetaType type)
{
    return QMetaType(type.id());
}
