#pragma once

#include "InMemory.h"

#include <QtCore/QPluginLoader>

/// The built library, loaded so that it can really leave the process again.
class LoadedPlugin
{
public:
    LoadedPlugin()
    {
        // By default Qt never unloads a plug-in; once the name is set that can't be undone.
        m_loader.setLoadHints({});
        m_loader.setFileName(QStringLiteral(TESSALINE_PLUGIN_PATH));
        if (!m_loader.load())
            qFatal("%s", qPrintable(m_loader.errorString()));
    }
    ~LoadedPlugin()
    {
        if (!m_loader.unload() || isInMemory(TESSALINE_PLUGIN_PATH))
            qFatal("the library can't be unloaded");
    }
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    QObject *object() { return m_loader.instance(); }

private:
    QPluginLoader m_loader;
};
