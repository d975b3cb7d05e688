#include "uitestsupport.h"

using namespace Qt::Literals::StringLiterals;

namespace {
// The windows end the program and start sessions through the spine, as in
// the running program.
[[maybe_unused]] const bool g_spineInstalled = (modMain::InstallLifecycle(), true);
} // namespace

void FlushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void UnloadAllForms()
{
    for (QWidget *form : forms::Open())
        forms::Unload(form);
    modrender::ReleaseRendering();
    FlushDeletes();
}

void StudyDeck(const std::vector<std::pair<QString, QString>> &cards, const QList<int> &trouble)
{
    g_SuppressRefresh = true;
    const int n = int(cards.size());
    g_Deck.Resize(n);
    for (int i = 0; i < n; ++i) {
        g_Deck[i].question = cards[size_t(i)].first;
        g_Deck[i].answer = cards[size_t(i)].second;
        g_Deck[i].chapter = u"Kapitel"_s;
        g_Deck[i].trouble = trouble.contains(i) ? kCardTrue : kCardFalse;
    }
    modrender::StartRendering();
    frmMain::Existing()->SetStudying(true);
}

void StudyDeck(int n, const QList<int> &trouble)
{
    std::vector<std::pair<QString, QString>> cards;
    for (int i = 0; i < n; ++i)
        cards.emplace_back(u"q%1"_s.arg(i), u"a%1"_s.arg(i));
    StudyDeck(cards, trouble);
}
