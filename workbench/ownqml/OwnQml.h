#pragma once

#include "LoadedFiles.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlError>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include <memory>

namespace workbench {

/// The QML file of a client's developer, in an engine of its own. It is loaded again when it or a
/// file that it imports is saved.
class OwnQml : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, the program's")
    Q_PROPERTY(QString file READ file CONSTANT)
    /// The root object when it is an item, else null.
    Q_PROPERTY(QQuickItem *item READ item NOTIFY loaded)
    /// The reports of the engine since the file was loaded, a line each: file, line, column,
    /// message.
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorsChanged)

public:
    /// @param names of the context: objects and values by name; objects are not owned
    OwnQml(const QString &file, const QStringList &importPaths, const QVariantMap &names);
    ~OwnQml() override;
    Q_DISABLE_COPY_MOVE(OwnQml)

    QString file() const { return m_file; }
    QQuickItem *item() const { return qobject_cast<QQuickItem *>(m_root.get()); }
    QStringList errors() const { return m_errors; }
    QString errorText() const { return m_errors.join(QLatin1Char('\n')); }

    /// Loads the file anew. @return false with errors() if it can't be loaded
    Q_INVOKABLE bool load();

Q_SIGNALS:
    void loaded();
    void errorsChanged();
    /// The file has called Qt.exit() or Qt.quit().
    void exitRequested(int code);

private:
    void startEngine();
    void report(const QList<QQmlError> &errors);

    QString m_file;
    QStringList m_importPaths;
    QVariantMap m_names;
    QStringList m_errors;
    LoadedFiles m_files;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QObject> m_root; ///< before its engine is destroyed
};

} // namespace workbench
