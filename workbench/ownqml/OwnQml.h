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

/// Runs the QML file of a client's developer in a separate engine. Loads it again when it or a file
/// that it imports is saved.
class OwnQml : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program creates it")
    Q_PROPERTY(QString file READ file CONSTANT)
    /// The root object if it is an item, otherwise null.
    Q_PROPERTY(QQuickItem *item READ item NOTIFY loaded)
    /// The engine's errors since the file was loaded, one per line: file, line, column, message.
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorsChanged)

public:
    /// @param names context properties by name; objects are not owned
    OwnQml(const QString &file, const QStringList &importPaths, const QVariantMap &names);
    ~OwnQml() override;
    Q_DISABLE_COPY_MOVE(OwnQml)

    QString file() const { return m_file; }
    QQuickItem *item() const { return qobject_cast<QQuickItem *>(m_root.get()); }
    QStringList errors() const { return m_errors; }
    QString errorText() const { return m_errors.join(QLatin1Char('\n')); }

    /// Loads the file again in a new engine.
    /// @return false if it can't be loaded; see errors()
    Q_INVOKABLE bool load();

Q_SIGNALS:
    void loaded();
    void errorsChanged();
    /// The file called Qt.exit() or Qt.quit().
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
    std::unique_ptr<QObject> m_root; ///< last member: destroyed before its engine
};

} // namespace workbench
