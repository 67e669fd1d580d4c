#include "LoadedPlugin.h"

namespace driver {

LoadedPlugin::LoadedPlugin(const QString &library)
{
    // Clears the default hint, which forbids unloading. Newer versions of Qt ignore hints that are
    // set after the file name.
    m_loader.setLoadHints({});
    m_loader.setFileName(library);
    if (!m_loader.load())
        m_error = m_loader.errorString();
}

LoadedPlugin::~LoadedPlugin()
{
    unload();
}

bool LoadedPlugin::unload()
{
    return m_loader.isLoaded() && m_loader.unload();
}

} // namespace driver
