// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/keyvaluetext.h"

#include <QString>

// The settings of the program's additions, in a file of their own beside
// "sys.zel" (which keeps exactly the settings it always had). A UTF-8 text of
// "key=value" lines: read once at start-up, written whole through the checked
// save when a setting changes and at shutdown. Keys it does not know are kept;
// damaged lines are ignored. Values are text; numbers and flags are read from
// it with a default for anything missing or unreadable.
class ExtraSettings
{
public:
    static constexpr char16_t kFileName[] = u"extras.conf";

    // The file in the home folder (g_BaseDirectory).
    static QString Path();

    // Replaces what is held by the file's settings; a missing, unreadable or
    // oversized file leaves none (every default applies).
    void Load();
    // Writes every setting held; false with the reason when that failed (the
    // settings then stay unsaved, to be tried again).
    bool Save(QString *error = nullptr);
    // Something changed since the last load or save.
    bool IsDirty() const { return m_dirty; }
    // Forgets every setting (as a program that has read no file).
    void Clear();

    bool Contains(const QString &key) const;
    QString String(const QString &key, const QString &defaultValue = QString()) const;
    int Int(const QString &key, int defaultValue) const;
    bool Bool(const QString &key, bool defaultValue) const;
    void SetString(const QString &key, const QString &value);
    void SetInt(const QString &key, int value);
    void SetBool(const QString &key, bool value);

private:
    keyvalue::Pairs m_pairs;
    bool m_dirty = false;
};

extern ExtraSettings g_Extras;
