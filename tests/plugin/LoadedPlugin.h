#pragma once

#include "PluginBase.h"

#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>

#include <dlfcn.h>

/// The built library, loaded so that it can really leave the process again.
class LoadedPlugin
{
public:
    explicit LoadedPlugin(FrameworkWrapperBase *framework)
        : m_loader(QStringLiteral(TESSALINE_PLUGIN_PATH))
    {
        m_loader.setLoadHints({}); // by default Qt never unloads a plug-in
        m_object = m_loader.instance();
        if (!m_object)
            qFatal("%s", qPrintable(m_loader.errorString()));
        plugin().InitialPluginBase(nullptr, nullptr, framework);
    }
    ~LoadedPlugin()
    {
        if (isInMemory() && !unload())
            qFatal("the library can't be unloaded");
    }
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    QObject *object() const { return m_object; }
    PluginBase &plugin() const { return *qobject_cast<PluginBase *>(m_object); }

    static bool isInMemory() { return isInMemory(TESSALINE_PLUGIN_PATH); }
    static bool isInMemory(const char *library)
    {
        void *const handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
        if (handle)
            dlclose(handle);
        return handle;
    }

    /// Deletes the object and unloads the library; false when something keeps it in memory.
    bool unload()
    {
        delete m_object.data();
        return m_loader.unload() && !isInMemory();
    }

private:
    QPluginLoader m_loader;
    QPointer<QObject> m_object;
};
