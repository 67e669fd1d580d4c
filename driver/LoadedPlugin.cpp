#include "LoadedPlugin.h"

namespace driver {

LoadedPlugin::LoadedPlugin(const QString &library)
{
    // By default Qt never unloads a plug-in; once the name is set newer versions can't be told to.
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
