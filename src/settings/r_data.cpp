// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/r_data.h"

#include "core/log.h"
#include "core/programstate.h"
#include "korva/ikorvalite.h"
#include "settings/settingskeys.h"

#include <QTimer>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

struct DefaultColor
{
    const char16_t *name;
    quint32 color;
};

constexpr DefaultColor kDefaultColors[] = {
        {u"backcolor_a", 0},
        {u"backcolor_b", 14570825}, // 0xDE5549: red 73, green 85, blue 222
        {u"main_text_shadow", 0},
        {u"main_text_forecolor", 0xFFFFFF},
        {u"tr_text_shadow", 0},
        {u"tr_text_forecolor", 0xFFFFFF},
        {u"tl_text_shadow", 0},
        {u"tl_text_forecolor", 0xFFFFFF},
        {u"br_text_shadow", 0},
        {u"br_text_forecolor", 0xFFFFFF},
        {u"bl_text_shadow", 0},
        {u"bl_text_forecolor", 0xFFFFFF},
};

// The master database, or a short-lived one mounted for this call when the
// program has none open.
class MasterAccess
{
public:
    MasterAccess()
    {
        if (g_MasterDb)
            return;
        m_own = std::make_unique<ikorvalite>();
        m_own->Mount(g_BaseDirectory + u'/' + settings::kMasterFileName);
    }
    ~MasterAccess()
    {
        if (m_own)
            m_own->Unmount();
    }
    ikorvalite &db() { return m_own ? *m_own : *g_MasterDb; }

private:
    std::unique_ptr<ikorvalite> m_own;
};

} // namespace

r_data::r_data(QObject *parent) : QObject(parent), m_colors(1) {}

r_data::~r_data() = default;

void r_data::SetColor(const QString &name, quint32 color)
{
    for (ColorEntry &entry : m_colors) {
        if (entry.name == name) {
            entry.color = color;
            return;
        }
    }
    m_colors.push_back({name, color});
}

quint32 r_data::Color(const QString &name, quint32 defaultColor) const
{
    for (size_t i = 1; i < m_colors.size(); ++i) {
        if (m_colors[i].name == name)
            return m_colors[i].color;
    }
    return defaultColor;
}

void r_data::ColorDefaults()
{
    Log(u"forcing metrics data manager to defaults/n"_s);
    m_colors.assign(1, ColorEntry());
    for (const DefaultColor &d : kDefaultColors)
        SetColor(QString::fromUtf16(d.name), d.color);
    Log(u".. "_s + QString::number(m_colors.size() - 1) + u" colors defined/n"_s);
}

int r_data::ReadColors()
{
    MasterAccess master;
    ikorvalite &db = master.db();

    m_colors.assign(1, ColorEntry());
    int count = 0;
    for (int i = db.FirstIndex(); i <= db.LastIndex(); ++i) {
        const korva::Entry entry = db.GetEntry(i);
        if (entry.isText == korva::kFalse && entry.note == settings::kGroupColors) {
            SetColor(entry.key, quint32(entry.number));
            ++count;
        }
    }
    Log(u"read "_s + QString::number(count) + u" color definitions from disk/n"_s);

    // The start-up hint is kept under the bottom-right key but shown in the
    // bottom-left corner; the card manager relies on that slot.
    SetCornerText(Corner::BottomLeft,
                  db.GetText(settings::kStartHint, u"Right click anywhere for menu"_s).value);
    return count;
}

void r_data::LoadColors()
{
    if (ReadColors() == 0)
        ColorDefaults();
}

void r_data::WriteColors()
{
    MasterAccess master;
    ikorvalite &db = master.db();
    for (const ColorEntry &entry : m_colors)
        db.SetValue(entry.name, QString(), qint32(entry.color), settings::kGroupColors);
    db.Save();
    Log(u"wrote "_s + QString::number(m_colors.size() - 1) + u" color definitions to disk/n"_s);
}

void r_data::SetCornerText(Corner corner, const QString &text, int displaySeconds)
{
    CornerSlot &s = slot(corner);
    s.text = text;
    s.shown = true;
    if (s.timer)
        s.timer->stop();
    if (displaySeconds <= 0)
        return;
    if (!s.timer) {
        s.timer = new QTimer(this);
        s.timer->setSingleShot(true);
        connect(s.timer, &QTimer::timeout, this, [this, corner] {
            slot(corner).shown = false;
            Q_EMIT cornerExpired(corner);
        });
    }
    s.timer->start(displaySeconds * 1000);
}

void r_data::SetCornerShown(Corner corner, bool shown)
{
    CornerSlot &s = slot(corner);
    s.shown = shown;
    if (s.timer)
        s.timer->stop();
}
