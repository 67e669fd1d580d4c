#pragma once

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

class PluginBase;
class QFileInfo;

namespace workbench {

/// Loads the plug-in library as the client does: checks its metadata before any of its code runs,
/// then creates the plug-in's object.
class PluginHost
{
public:
    PluginHost() = default;
    /// Destroys the plug-in's object and unloads the library.
    ~PluginHost();
    Q_DISABLE_COPY_MOVE(PluginHost)

    /// @return the path of the plug-in that the build creates
    static QString defaultPath();

    /// @return the plug-in ID that the metadata must contain
    static QString pluginID();

    /// Loads a library.
    /// @param error set on failure to a message with the file, the expected and the found value
    /// @return the plug-in's object, owned by the library; null on failure
    PluginBase *load(const QString &path, QString *error);

private:
    QString readingDefect(const QFileInfo &file) const;
    QString loadingDefect() const;

    QPluginLoader m_loader;
};

} // namespace workbench
