// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The study session the dialog tests start from: a settings file with the
// default colours, and six German cards on show in the study window.
#include "uitestsupport.h"
#include "windows/frmfind.h"

using namespace Qt::Literals::StringLiterals;

// What each dialog test starts from, and what it leaves behind.
class DialogFixture : public QObject
{
protected:
    std::unique_ptr<TestEnvironment> m_env;

    // A study session as after loading chapters, the first card on show.
    void beginTest()
    {
        m_env = std::make_unique<TestEnvironment>();
        g_BaseDirectory = m_env->home();
        g_MasterDb = std::make_unique<ikorvalite>();
        QVERIFY(g_MasterDb->Mount(m_env->path(u"sys.zel"_s), false));
        r_data defaults;
        defaults.ColorDefaults();
        defaults.WriteColors();
        StudyDeck({{u"das Haus"_s, u"the house"_s},
                   {u"die Hausaufgabe"_s, u"homework"_s},
                   {u"der Haushalt"_s, u"household"_s},
                   {u"die Maus"_s, u"the mouse"_s},
                   {u"Mousepad"_s, u"mouse pad"_s},
                   {u"das Gras"_s, u"grass"_s}});
        modrender::ShowFirstCard();
    }
    void endTest()
    {
        UnloadAllForms();
        frmFind::SetCrashHandler({});
        m_env.reset();
    }
};
