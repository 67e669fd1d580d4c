#include "PluginHost.h"

#include "PluginBase.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>

namespace workbench {

namespace {

/// @return the reason why the metadata is not the plug-in's, or an empty text
QString defectOf(const QJsonObject &metaData)
{
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
    // The loader searches Qt's plug-in folders for a relative path.
    const QFileInfo file(QFileInfo(path).absoluteFilePath());
    m_loader.setFileName(file.filePath());
    PluginBase *plugin = nullptr;
    const QString defect = readingDefect(file);
    if (defect.isEmpty())
        plugin = qobject_cast<PluginBase *>(m_loader.instance());
    if (!plugin)
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file.filePath()),
                                              defect.isEmpty() ? loadingDefect() : defect);
    return plugin;
}

/// @return the reason why the file is not the plug-in, or an empty text. Runs no code of the file.
QString PluginHost::readingDefect(const QFileInfo &file) const
{
    if (!file.exists())
        return QStringLiteral("there is no such file");
    if (!file.isFile() || !file.isReadable())
        return QStringLiteral("expected a file that can be read");
    const QJsonObject metaData = m_loader.metaData();
    return metaData.isEmpty()
               ? QStringLiteral("expected a Qt plug-in, found: ") + m_loader.errorString()
               : defectOf(metaData);
}

/// @return the reason why the loader failed
QString PluginHost::loadingDefect() const
{
    // Qt stores its version as 0xMMmmpp.
    const int version = m_loader.metaData().value(QLatin1String("version")).toInt();
    const int major = version >> 16;
    const int minor = (version >> 8) & 0xff;
    if (major != QT_VERSION_MAJOR || minor > QT_VERSION_MINOR)
        return QStringLiteral("it was built with Qt %1.%2; a program with Qt %3 can't load it")
            .arg(QString::number(major), QString::number(minor), QLatin1String(qVersion()));
    return QStringLiteral("it can't be loaded: ") + m_loader.errorString();
}

} // namespace workbench
