// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Keys and groups of the master database "sys.zel". A group is the entry's note.
namespace settings {

using namespace Qt::Literals::StringLiterals;

inline const QString kMasterFileName = u"sys.zel"_s;

inline const QString kFileListCount = u"flist_count"_s;
inline QString FileListName(int n)
{
    return u"flist_name_"_s + QString::number(n);
}

inline const QString kShowMouseHover = u"show_mouse_hover"_s;
inline const QString kTroubleByDefault = u"trouble_by_default"_s;
inline const QString kAlphaLevel = u"alpha_level"_s;
inline const QString kAlphaEffects = u"alpha_effects"_s;
inline const QString kStartHint = u"br_text"_s; // read into the bottom-left corner

inline QString WindowLeftKey(const QString &formName)
{
    return formName + u".left"_s;
}
inline QString WindowTopKey(const QString &formName)
{
    return formName + u".top"_s;
}

inline const QString kGroupNone;
inline const QString kGroupOptions = u"options"_s;
inline const QString kGroupMetrics = u"metrics"_s;
inline const QString kGroupAlpha = u"alpha_transparency"_s;
inline const QString kGroupColors = u"color_metrics"_s;

// 16-bit booleans as the files keep them.
inline constexpr qint32 kTrue = -1;
inline constexpr qint32 kFalse = 0;
inline qint32 FlagValue(bool flag)
{
    return flag ? kTrue : kFalse;
}

} // namespace settings
