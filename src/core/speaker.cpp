// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/speaker.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class MuteSpeaker final : public Speaker
{
public:
    QString Unavailable() const override { return u"No speech engine is installed"_s; }
    void Say(const QString &, const QString &) override {}
};

MuteSpeaker g_mute;
Speaker *g_speaker = nullptr;

} // namespace

Speaker &speaker()
{
    return g_speaker ? *g_speaker : g_mute;
}

void SetSpeaker(Speaker *s)
{
    g_speaker = s;
}
