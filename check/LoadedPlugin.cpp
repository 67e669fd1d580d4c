#include "LoadedPlugin.h"

namespace check {

LoadedPlugin::LoadedPlugin(const QString &library)
    : m_loader(library)
{
    m_loader.setLoadHints({}); // by default Qt never unloads a plug-in
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

} // namespace check
