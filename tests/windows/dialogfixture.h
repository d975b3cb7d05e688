// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The study session the dialog tests start from: a settings file with the
// default colours, and six German cards on show in the study window.
#include "uitestsupport.h"
#include "windows/frmfind.h"

using namespace Qt::Literals::StringLiterals;

struct Words
{
    const char16_t *question;
    const char16_t *answer;
};

inline const Words kCards[] = {
        {u"das Haus", u"the house"}, {u"die Hausaufgabe", u"homework"}, {u"der Haushalt", u"household"},
        {u"die Maus", u"the mouse"}, {u"Mousepad", u"mouse pad"},       {u"das Gras", u"grass"},
};

// A study session as after loading chapters: the settings file, the deck
// above and the study window showing its first card.
inline void startStudying(TestEnvironment &env)
{
    g_BaseDirectory = env.home();
    g_MasterDb = std::make_unique<ikorvalite>();
    QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
    r_data defaults;
    defaults.ColorDefaults();
    defaults.WriteColors();
    std::vector<std::pair<QString, QString>> cards;
    for (const Words &w : kCards)
        cards.emplace_back(QString::fromUtf16(w.question), QString::fromUtf16(w.answer));
    StudyDeck(cards);
    modrender::ShowFirstCard();
}

// What each dialog test starts from, and what it leaves behind.
class DialogFixture : public QObject
{
protected:
    std::unique_ptr<TestEnvironment> m_env;

    void beginTest()
    {
        m_env = std::make_unique<TestEnvironment>();
        startStudying(*m_env);
    }
    void endTest()
    {
        UnloadAllForms();
        frmFind::SetCrashHandler({});
        m_env.reset();
    }
};
