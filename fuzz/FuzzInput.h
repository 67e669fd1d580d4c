#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <cstddef>
#include <cstdint>

/// Creates values from bytes. Any bytes give a value; without bytes the values are the simplest.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_end(data + size)
    {
    }

    bool isEmpty() const { return m_data == m_end; }
    /// @return a number from 0 to @p limit - 1
    int below(int limit) { return limit > 0 ? number(limit > 256 ? 2 : 1) % limit : 0; }
    qint64 integer();
    /// @return mostly a name that plug-in or host use, else a text of any characters
    QString text();
    QVariant value(int depth = 0);
    /// @return a value of a type; default-constructed if numbers can't be converted to it
    QVariant valueOf(QMetaType type);
    /// @return the result of an answer: a record, a list of records, a map of records, or any value
    QVariant answer();

private:
    int number(int count);
    QVariantMap map(int depth);
    QVariantList list(int depth);

    const std::uint8_t *m_data;
    const std::uint8_t *m_end;
};
