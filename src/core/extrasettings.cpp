// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"

#include "core/programstate.h"
#include "korva/diskfile.h"

using namespace Qt::Literals::StringLiterals;

ExtraSettings g_Extras;

namespace {
// Far more than any number of settings takes; a larger file is not ours.
constexpr qint64 kMaxFileSize = 1024 * 1024;
} // namespace

QString ExtraSettings::Path()
{
    return g_BaseDirectory + u'/' + QString::fromUtf16(kFileName);
}

void ExtraSettings::Load()
{
    QByteArray text;
    m_pairs = korva::readFile(Path(), kMaxFileSize, text, nullptr) == korva::ReadStatus::Ok
            ? keyvalue::Parse(text)
            : keyvalue::Pairs();
    m_dirty = false;
}

bool ExtraSettings::Save(QString *error)
{
    const QByteArray text =
            keyvalue::Format(m_pairs, u"Vocabrix: settings of the study window's additions"_s);
    if (!korva::saveFile(Path(), text, error))
        return false;
    m_dirty = false;
    return true;
}

void ExtraSettings::Clear()
{
    m_pairs.clear();
    m_dirty = false;
}

bool ExtraSettings::Contains(const QString &key) const
{
    return keyvalue::Find(m_pairs, key) != nullptr;
}

QString ExtraSettings::String(const QString &key, const QString &defaultValue) const
{
    const QString *value = keyvalue::Find(m_pairs, key);
    return value ? *value : defaultValue;
}

int ExtraSettings::Int(const QString &key, int defaultValue) const
{
    bool ok = false;
    const int value = String(key).toInt(&ok);
    return ok ? value : defaultValue;
}

bool ExtraSettings::Bool(const QString &key, bool defaultValue) const
{
    const QString value = String(key).toLower();
    if (value == u"true"_s || value == u"1"_s || value == u"yes"_s)
        return true;
    if (value == u"false"_s || value == u"0"_s || value == u"no"_s)
        return false;
    return defaultValue;
}

void ExtraSettings::SetString(const QString &key, const QString &value)
{
    Q_ASSERT(keyvalue::IsValidKey(key));
    const QString *old = keyvalue::Find(m_pairs, key);
    if (old && *old == value)
        return;
    keyvalue::Set(m_pairs, key, value);
    m_dirty = true;
}

void ExtraSettings::SetInt(const QString &key, int value)
{
    SetString(key, QString::number(value));
}

void ExtraSettings::SetBool(const QString &key, bool value)
{
    SetString(key, value ? u"true"_s : u"false"_s);
}
