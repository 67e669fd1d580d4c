#include "PluginHost.h"

#include "PluginBase.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QJsonObject>

namespace workbench {

namespace {

/// What is wrong with the metadata of a library, in words; empty when it is the plug-in.
QString defectOf(const QJsonObject &metaData)
{
    if (metaData.isEmpty())
        return QStringLiteral("expected a Qt plug-in, found a file without metadata");

    const QString iid = metaData.value(QLatin1String("IID")).toString();
    if (iid != QLatin1String(PluginBase_iid))
        return QStringLiteral("expected the interface \"%1\", found \"%2\"")
            .arg(QLatin1String(PluginBase_iid), iid);

    const QJsonObject own = metaData.value(QLatin1String("MetaData")).toObject();
    const QJsonValue clientOnly = own.value(QLatin1String("ClientOnly"));
    if (!clientOnly.isBool())
        return QStringLiteral("expected the key \"ClientOnly\" with true or false, found \"%1\"")
            .arg(clientOnly.toVariant().toString());
    const QString id = own.value(QLatin1String("PluginID")).toString();
    if (id != PluginHost::pluginID())
        return QStringLiteral("expected the plug-in ID \"%1\", found \"%2\"")
            .arg(PluginHost::pluginID(), id);
    return QString();
}

} // namespace

PluginHost::~PluginHost()
{
    m_loader.unload();
}

QString PluginHost::defaultPath()
{
    const QDir folder(QCoreApplication::applicationDirPath());
#ifdef Q_OS_WIN
    return folder.absoluteFilePath(QStringLiteral("../plugins/Tessaline.dll"));
#else
    return folder.absoluteFilePath(QStringLiteral("../plugins/Tessaline.so"));
#endif
}

QString PluginHost::pluginID()
{
    return QStringLiteral("2F6394EE90434A7190D7511370AFAE17");
}

PluginBase *PluginHost::load(const QString &path, QString *error)
{
    m_loader.setFileName(path);
    QString defect = defectOf(m_loader.metaData());
    PluginBase *plugin = nullptr;
    if (defect.isEmpty()) {
        plugin = qobject_cast<PluginBase *>(m_loader.instance());
        if (!plugin)
            defect = QStringLiteral("expected a plug-in that works with Qt %1, found: %2")
                         .arg(QLatin1String(qVersion()), m_loader.errorString());
    }
    if (!plugin)
        *error = QDir::toNativeSeparators(path) + QLatin1String(": ") + defect;
    return plugin;
}

} // namespace workbench
