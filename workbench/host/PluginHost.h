#pragma once

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

class PluginBase;
class QFileInfo;

namespace workbench {

/// Loads the plug-in library as the client does: judges it by its metadata before any of its code
/// runs, asks for its object and hands that what it lives on.
class PluginHost
{
public:
    PluginHost() = default;
    /// Destroys the plug-in's object and gives the library back.
    ~PluginHost();
    Q_DISABLE_COPY_MOVE(PluginHost)

    /// The file that the build puts beside the workbench.
    static QString defaultPath();

    /// The plug-in identifier that the metadata must name.
    static QString pluginID();

    /// The plug-in's object, which the library owns; null with @p error, which names the file, what
    /// was expected and what was found.
    PluginBase *load(const QString &path, QString *error);

private:
    QString readingDefect(const QFileInfo &file) const;
    QString loadingDefect() const;

    QPluginLoader m_loader;
};

} // namespace workbench
