// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

// Where a window keeps its controls' design-time properties under short keys
// ("bc" back colour, "fc" fore colour, "c" caption, "e" enabled, ...). A
// value equal to its default is not stored, and a missing one reads as it.
class PropertyBag
{
public:
    QVariant ReadProperty(const QString &key, const QVariant &defaultValue) const
    {
        return m_values.value(key, defaultValue);
    }
    void WriteProperty(const QString &key, const QVariant &value, const QVariant &defaultValue)
    {
        if (value == defaultValue)
            m_values.remove(key);
        else
            m_values.insert(key, value);
    }
    const QVariantMap &values() const { return m_values; }

private:
    QVariantMap m_values;
};
