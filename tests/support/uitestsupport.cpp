// SPDX-License-Identifier: GPL-3.0-or-later
#include "uitestsupport.h"

#include "cards/shuffler.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QToolButton>

#include <algorithm>

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

void ResetStudyWindow()
{
    if (frmMain *main = frmMain::Existing())
        main->mP->hide();
    UnloadAllForms();
    SetMainRenderer(nullptr);
    SetRandomSource(nullptr);
    modrender::SetSideCoin(nullptr);
    qunsetenv("BROWSER");
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

namespace {

// Something a person works with: buttons, boxes, fields, lists, tabs.
bool interactive(QWidget *w)
{
    return qobject_cast<QAbstractButton *>(w) || qobject_cast<QAbstractSlider *>(w) || qobject_cast<QLineEdit *>(w)
            || qobject_cast<QAbstractItemView *>(w) || qobject_cast<QTabBar *>(w) || qobject_cast<QComboBox *>(w)
            || qobject_cast<zelControl *>(w);
}

// The column headers and the corner button of a list or table work by mouse;
// the list itself is reached by keyboard.
bool partOfAList(QWidget *w)
{
    return qobject_cast<QHeaderView *>(w) || qobject_cast<QAbstractItemView *>(w->parentWidget());
}

// Qt's own helpers (a toolbar's overflow button) show what is reached otherwise.
bool qtInternal(QWidget *w)
{
    return w->objectName().startsWith(u"qt_"_s);
}

} // namespace

// Tab visits every control on show, and in reading order: left to right
// along a row, down a column, or on to the next column of a group; never back
// up and to the left. Toolbar buttons may have keys of their own instead.
void checkTabOrder(QWidget *w)
{
    QList<QWidget *> controls;
    for (QWidget *child : w->findChildren<QWidget *>())
        if (child->isVisibleTo(w) && child->isEnabled() && interactive(child) && !partOfAList(child)
            && !qtInternal(child))
            controls << child;
    QList<QWidget *> chain;
    for (QWidget *at = w->nextInFocusChain(); at != w && chain.size() < 200; at = at->nextInFocusChain())
        if (controls.contains(at) && (at->focusPolicy() & Qt::TabFocus))
            chain << at;
    // Tab goes round: start at the control that comes first to the eye.
    const auto first = std::min_element(chain.begin(), chain.end(), [w](QWidget *a, QWidget *b) {
        const QPoint pa = a->mapTo(w, QPoint(0, 0)), pb = b->mapTo(w, QPoint(0, 0));
        return std::pair(pa.y(), pa.x()) < std::pair(pb.y(), pb.x());
    });
    std::rotate(chain.begin(), first, chain.end());
    auto name = [w](QWidget *c) {
        const QPoint at = c->mapTo(w, QPoint(0, 0));
        return w->objectName() + u": "_s + QString::fromLatin1(c->metaObject()->className()) + u' ' + c->objectName()
                + u"@%1,%2"_s.arg(at.x()).arg(at.y());
    };
    for (QWidget *c : controls) {
        auto *tool = qobject_cast<QToolButton *>(c);
        QVERIFY2(chain.contains(c) || (tool && tool->defaultAction() && !tool->defaultAction()->shortcut().isEmpty()),
                 qPrintable(name(c)));
    }
    for (qsizetype i = 1; i < chain.size(); ++i) {
        const QPoint a = chain[i - 1]->mapTo(w, QPoint(0, 0)), b = chain[i]->mapTo(w, QPoint(0, 0));
        const bool sameRow = qAbs(a.y() - b.y()) < 12;
        const bool back = sameRow ? b.x() < a.x() : (b.y() < a.y() && b.x() <= a.x());
        QVERIFY2(!back, qPrintable(name(chain[i - 1]) + u" before "_s + name(chain[i])));
    }
}

namespace {

// The letter after the first single '&' of a caption ("&&" is an ampersand).
QChar mnemonic(const QString &caption)
{
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != u'&')
            continue;
        if (caption[i + 1] != u'&')
            return caption[i + 1].toUpper();
        ++i;
    }
    return {};
}

} // namespace

// What is on show at once must not share a key: hidden pages may, since Qt
// gives a key only to the controls that can be seen.
void checkMnemonics(QWidget *w)
{
    QHash<QChar, QString> owners;
    auto claim = [&](const QString &caption, QWidget *control) {
        const QChar key = mnemonic(caption);
        if (key.isNull())
            return;
        const QString name = QString::fromLatin1(control->metaObject()->className()) + u" '"_s + caption + u'\'';
        QVERIFY2(!owners.contains(key),
                 qPrintable(w->objectName() + u": Alt+"_s + key + u" for "_s + owners.value(key) + u" and "_s + name));
        owners.insert(key, name);
    };
    for (QWidget *child : w->findChildren<QWidget *>()) {
        if (!child->isVisibleTo(w))
            continue;
        if (auto *button = qobject_cast<QAbstractButton *>(child))
            claim(button->text(), child);
        else if (auto *label = qobject_cast<QLabel *>(child); label && label->buddy())
            claim(label->text(), child);
        else if (auto *tabs = qobject_cast<QTabBar *>(child))
            for (int i = 0; i < tabs->count(); ++i)
                claim(tabs->tabText(i), child);
        if (QTest::currentTestFailed())
            return;
    }
}
