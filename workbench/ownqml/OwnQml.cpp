#include "OwnQml.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>

#include <cstdio>

namespace workbench {

namespace {

QString lineOf(const QQmlError &error)
{
    const QString file = error.url().isLocalFile()
                             ? QDir::toNativeSeparators(error.url().toLocalFile())
                             : error.url().toString();
    QString place = QStringLiteral("%1:%2").arg(file).arg(error.line());
    if (error.column() > 0) // some errors have no column
        place += QStringLiteral(":%1").arg(error.column());
    return place + QLatin1String(": ") + error.description();
}

} // namespace

OwnQml::OwnQml(const QString &file, const QStringList &importPaths, const QVariantMap &names)
    : m_file(QFileInfo(file).absoluteFilePath())
    , m_importPaths(importPaths)
    , m_names(names)
{
    connect(&m_files, &LoadedFiles::changed, this, &OwnQml::load);
}

OwnQml::~OwnQml() = default;

/// Creates an engine for each load, because an engine keeps singletons and JavaScript modules.
void OwnQml::startEngine()
{
    m_root.reset();
    m_files.clear();
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addUrlInterceptor(&m_files);
    for (const QString &path : std::as_const(m_importPaths))
        m_engine->addImportPath(path);
    m_engine->setOutputWarningsToStandardError(false);
    connect(m_engine.get(), &QQmlEngine::warnings, this, &OwnQml::report);
    connect(m_engine.get(), &QQmlEngine::exit, this, &OwnQml::exitRequested);
    connect(m_engine.get(), &QQmlEngine::quit, this, [this] { Q_EMIT exitRequested(0); });
    for (auto it = m_names.cbegin(); it != m_names.cend(); ++it)
        m_engine->rootContext()->setContextProperty(it.key(), it.value());
}

bool OwnQml::load()
{
    startEngine();
    m_errors.clear();
    Q_EMIT errorsChanged();
    m_files.watchFile(m_file);
    QQmlComponent component(m_engine.get(), QUrl::fromLocalFile(m_file));
    if (component.isReady())
        m_root.reset(component.create());
    if (!m_root)
        report(component.errors());
    Q_EMIT loaded();
    return m_root != nullptr;
}

void OwnQml::report(const QList<QQmlError> &errors)
{
    constexpr qsizetype MaxErrors = 100;
    for (const QQmlError &error : errors) {
        const QString line = lineOf(error);
        std::fprintf(stderr, "%s\n", qPrintable(line));
        if (m_errors.size() < MaxErrors)
            m_errors.append(line);
    }
    Q_EMIT errorsChanged();
}

} // namespace workbench
