#pragma once

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

namespace driver {

/// The library under check, loaded through Qt's plug-in loader as the client does, but so that it
/// really leaves the process again. Holds no object.
class LoadedPlugin
{
public:
    explicit LoadedPlugin(const QString &library);
    /// Unloads. An object that still exists goes first.
    ~LoadedPlugin();
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    /// Why it could not be loaded, or an empty text.
    QString error() const { return m_error; }

    /// The one object, made when there is none.
    QObject *object() { return m_loader.instance(); }

    /// @return whether the loader let the library go
    bool unload();

private:
    QPluginLoader m_loader;
    QString m_error;
};

} // namespace driver
