#pragma once

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

namespace driver {

/// Loads a plug-in library through Qt's plug-in loader, as the client does. In contrast to the
/// loader's default, unloading removes the library from the process.
class LoadedPlugin
{
public:
    explicit LoadedPlugin(const QString &library);
    /// Deletes the object if it still exists, and unloads the library.
    ~LoadedPlugin();
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    /// @return the reason why the library could not be loaded; empty if it is loaded
    QString error() const { return m_error; }

    /// Creates the plug-in's object if none exists.
    /// @return the object, owned by the library; the caller may delete it. Null on failure.
    QObject *object() { return m_loader.instance(); }

    /// @return true if the loader unloaded the library
    bool unload();

private:
    QPluginLoader m_loader;
    QString m_error;
};

} // namespace driver
