#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <cstddef>
#include <cstdint>

/// Makes values of bytes. Whatever the bytes, there is a value; without bytes it is the simplest.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_end(data + size)
    {
    }

    bool isEmpty() const { return m_data == m_end; }
    /// A number from 0 to @p limit - 1.
    int below(int limit) { return limit > 0 ? number(limit > 256 ? 2 : 1) % limit : 0; }
    qint64 integer();
    /// Mostly a name that plug-in or host know, or a text of any characters.
    QString text();
    QVariant value(int depth = 0);
    /// A value of a type; invalid for one that can't be made of bytes.
    QVariant valueOf(QMetaType type);
    /// What a server sends: a record, a list of them, the answer to a query, or any value.
    QVariant answer();

private:
    int number(int count);
    QVariantMap map(int depth);
    QVariantList list(int depth);

    const std::uint8_t *m_data;
    const std::uint8_t *m_end;
};
