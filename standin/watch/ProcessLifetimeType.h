#pragma once

#include <QtCore/QMetaType>

/// The same type as Qt's own libraries describe it. On Windows the types of a plug-in's methods and
/// signals are described inside the plug-in's library: a value made with such a description can't
/// be touched any more once the library has been unloaded.
inline QMetaType processLifetimeType(QMetaType type)
{
    return QMetaType(type.id());
}
