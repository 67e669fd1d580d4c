#include "DeepCopy.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <utility>
#include <vector>

namespace standin {

namespace {

/// A container on the way from the root to the value being copied.
struct Level
{
    int type;
    QStringList keys;     ///< of maps and hashes
    QVariantList sources; ///< shared with the original
    QVariantList copies;  ///< of the first sources; the container is complete with the last one
};

bool isContainer(const QVariant &value)
{
    const int type = value.typeId();
    return !value.isNull() && (type == QMetaType::QVariantMap || type == QMetaType::QVariantHash ||
                               type == QMetaType::QVariantList);
}

Level open(const QVariant &container)
{
    const int type = container.typeId();
    if (type == QMetaType::QVariantMap) {
        const QVariantMap map = container.toMap();
        return {type, map.keys(), map.values(), {}};
    }
    if (type == QMetaType::QVariantHash) {
        const QVariantHash hash = container.toHash();
        return {type, hash.keys(), hash.values(), {}};
    }
    return {type, {}, container.toList(), {}};
}

template <typename Map>
Map joined(const Level &level)
{
    Map map;
    for (qsizetype i = 0; i < level.keys.size(); ++i)
        map.insert(deepCopy(level.keys.at(i)), level.copies.at(i));
    return map;
}

QVariant closed(const Level &level)
{
    if (level.type == QMetaType::QVariantMap)
        return joined<QVariantMap>(level);
    if (level.type == QMetaType::QVariantHash)
        return joined<QVariantHash>(level);
    return level.copies;
}

QVariant copyOfLeaf(const QVariant &value)
{
    if (value.isNull())
        return value;
    switch (value.typeId()) {
    case QMetaType::QString:
        return deepCopy(value.toString());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return bytes.isNull() ? bytes : QByteArray(bytes.constData(), bytes.size());
    }
    case QMetaType::QStringList: {
        QStringList copies;
        const QStringList texts = value.toStringList();
        for (const QString &text : texts)
            copies.append(deepCopy(text));
        return copies;
    }
    default:
        return value;
    }
}

} // namespace

QString deepCopy(const QString &text)
{
    return text.isNull() ? QString() : QString(text.constData(), text.size());
}

// Without recursion: thousands of nested levels would overflow the call stack.
QVariant deepCopy(const QVariant &value)
{
    if (!isContainer(value))
        return copyOfLeaf(value);

    std::vector<Level> path;
    path.push_back(open(value));
    for (;;) {
        Level &level = path.back();
        if (level.copies.size() < level.sources.size()) {
            const QVariant &next = level.sources.at(level.copies.size());
            if (isContainer(next))
                path.push_back(open(next));
            else
                level.copies.append(copyOfLeaf(next));
            continue;
        }
        QVariant copy = closed(level);
        path.pop_back();
        if (path.empty())
            return copy;
        path.back().copies.append(std::move(copy));
    }
}

} // namespace standin
