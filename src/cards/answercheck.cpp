// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/answercheck.h"

#include <QStringList>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace answercheck {

namespace {

// One character of a text as the comparison sees it: where it stands and
// what it counts as (folded, umlauts spelled out; empty when it does not
// count at all).
struct Unit
{
    qsizetype at = 0;
    qsizetype length = 1;
    char32_t character = 0;
    QString key;
};
using Units = std::vector<Unit>;

struct Piece
{
    qsizetype begin = 0;
    qsizetype end = 0;
};

// Work beyond this many steps is not spent on finding the differing letters:
// the whole answer is marked instead.
constexpr qsizetype kMostSteps = qsizetype(1) << 20;

bool opens(char32_t c)
{
    return c == U'(' || c == U'[';
}

bool closes(char32_t c)
{
    return c == U')' || c == U']';
}

QString keyOf(char32_t c)
{
    if (c == U'\u2018' || c == U'\u2019')
        return u"'"_s;
    if (QChar::isSpace(c))
        return u" "_s;
    QString key = QString::fromUcs4(&c, 1).toCaseFolded();
    key.replace(u'ä', u"ae"_s).replace(u'ö', u"oe"_s).replace(u'ü', u"ue"_s).replace(u'ß', u"ss"_s);
    return key;
}

bool isArticle(const QString &word)
{
    static const QStringList articles {u"der"_s, u"die"_s, u"das"_s, u"ein"_s, u"eine"_s,
                                       u"the"_s, u"a"_s,   u"an"_s,  u"to"_s};
    return articles.contains(word);
}

// The answers of a text: split at ";" and "," outside brackets, or whole.
std::vector<Piece> piecesOf(const QString &text, bool split)
{
    std::vector<Piece> pieces;
    int depth = 0;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (opens(c.unicode()))
            ++depth;
        else if (closes(c.unicode()))
            depth = qMax(0, depth - 1);
        else if (split && depth == 0 && (c == u';' || c == u','))
            pieces.push_back({std::exchange(begin, i + 1), i});
    }
    pieces.push_back({begin, text.size()});
    return pieces;
}

void drop(Unit &unit)
{
    unit.key.clear();
}

// The units of one answer, with what does not count dropped: brackets and
// what they hold, spaces and punctuation around it, all but the first of a
// run of spaces, and one leading article followed by more.
Units unitsOf(const QString &text, Piece piece)
{
    Units units;
    int depth = 0;
    for (qsizetype i = piece.begin; i < piece.end;) {
        Unit unit;
        unit.at = i;
        unit.character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < piece.end && text[i + 1].isLowSurrogate()) {
            unit.character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            unit.length = 2;
        }
        if (opens(unit.character))
            ++depth;
        else if (closes(unit.character))
            depth = qMax(0, depth - 1);
        else if (depth == 0)
            unit.key = keyOf(unit.character);
        units.push_back(unit);
        i += unit.length;
    }

    auto counts = [](const Unit &u) { return !u.key.isEmpty(); };
    auto filler = [](const Unit &u) {
        return QChar::isSpace(u.character) || QChar::isPunct(u.character);
    };
    for (auto it = units.begin(); it != units.end() && (!counts(*it) || filler(*it)); ++it)
        drop(*it);
    for (auto it = units.rbegin(); it != units.rend() && (!counts(*it) || filler(*it)); ++it)
        drop(*it);
    bool afterSpace = false;
    for (Unit &u : units) {
        if (!counts(u))
            continue;
        const bool space = u.key == u" "_s;
        if (space && afterSpace)
            drop(u);
        afterSpace = space;
    }

    QString word;
    std::vector<Unit *> leading;
    for (Unit &u : units) {
        if (!counts(u))
            continue;
        leading.push_back(&u);
        if (u.key == u" "_s)
            break;
        word += u.key;
    }
    const bool more = std::count_if(units.begin(), units.end(), counts) > qsizetype(leading.size());
    if (!leading.empty() && leading.back()->key == u" "_s && more && isArticle(word)) {
        for (Unit *u : leading)
            drop(*u);
    }
    return units;
}

QString keyOf(const Units &units)
{
    QString key;
    for (const Unit &u : units)
        key += u.key;
    return key;
}

struct Alignment
{
    qsizetype cost = 0;
    std::vector<bool> changed; // for each letter that counts
};

// The cheapest way from the letters of an answer to the typed text: letters
// kept, changed, left out, or typed too many, each change costing one. A
// spelled-out umlaut is one letter, kept when typed either way.
Alignment align(const std::vector<const Unit *> &letters, const QString &typed)
{
    const qsizetype n = qsizetype(letters.size()), m = typed.size();
    Alignment result;
    result.changed.assign(size_t(n), false);
    if ((n + 1) * (m + 1) > kMostSteps) {
        result.cost = qMax(n, m);
        result.changed.assign(size_t(n), true);
        return result;
    }
    std::vector<qsizetype> cost(size_t((n + 1) * (m + 1)));
    auto at = [m, &cost](qsizetype i, qsizetype j) -> qsizetype & {
        return cost[size_t(i * (m + 1) + j)];
    };
    auto kept = [&](qsizetype i, qsizetype j) {
        const QString &key = letters[size_t(i - 1)]->key;
        return j >= key.size() && QStringView(typed).mid(j - key.size(), key.size()) == key;
    };
    for (qsizetype i = 0; i <= n; ++i) {
        for (qsizetype j = 0; j <= m; ++j) {
            if (i == 0) {
                at(i, j) = j;
                continue;
            }
            qsizetype best = at(i - 1, j) + 1;
            if (j > 0)
                best = qMin(best, qMin(at(i, j - 1), at(i - 1, j - 1)) + 1);
            if (kept(i, j))
                best = qMin(best, at(i - 1, j - letters[size_t(i - 1)]->key.size()));
            at(i, j) = best;
        }
    }
    result.cost = at(n, m);
    for (qsizetype i = n, j = m; i > 0 || j > 0;) {
        if (i > 0 && kept(i, j) && at(i, j) == at(i - 1, j - letters[size_t(i - 1)]->key.size())) {
            j -= letters[size_t(--i)]->key.size();
        } else if (i > 0 && j > 0 && at(i, j) == at(i - 1, j - 1) + 1) {
            result.changed[size_t(--i)] = true;
            --j;
        } else if (i > 0 && at(i, j) == at(i - 1, j) + 1) {
            result.changed[size_t(--i)] = true;
        } else {
            // A letter typed too many: the letter it stands before (or the last).
            if (n > 0)
                result.changed[size_t(qMin(i, n - 1))] = true;
            --j;
        }
    }
    return result;
}

} // namespace

Verdict Check(const QString &typed, const QString &expected)
{
    Verdict verdict;
    verdict.marked = QList<bool>(expected.size(), false);
    // Input methods may give an umlaut as a letter and a combining mark.
    const QString given = typed.normalized(QString::NormalizationForm_C);
    const QString typedKey = keyOf(unitsOf(given, {0, given.size()}));
    if (typedKey.isEmpty())
        return verdict;

    std::vector<Units> answers;
    QStringList keys;
    for (const Piece &piece : piecesOf(expected, true)) {
        Units units = unitsOf(expected, piece);
        const QString key = keyOf(units);
        if (!key.isEmpty()) {
            answers.push_back(std::move(units));
            keys << key;
        }
    }
    bool right = typedKey == keyOf(unitsOf(expected, {0, expected.size()}));
    if (!right) {
        bool any = false, all = true;
        for (const Piece &piece : piecesOf(given, true)) {
            const QString key = keyOf(unitsOf(given, piece));
            any = any || !key.isEmpty();
            all = all && (key.isEmpty() || keys.contains(key));
        }
        right = any && all;
    }
    verdict.right = right;
    if (right)
        return verdict;

    std::optional<Alignment> nearest;
    std::vector<const Unit *> nearestLetters;
    for (const Units &units : answers) {
        std::vector<const Unit *> letters;
        for (const Unit &u : units)
            if (!u.key.isEmpty())
                letters.push_back(&u);
        Alignment alignment = align(letters, typedKey);
        if (!nearest || alignment.cost < nearest->cost) {
            nearest = std::move(alignment);
            nearestLetters = std::move(letters);
        }
    }
    for (size_t i = 0; nearest && i < nearestLetters.size(); ++i)
        for (qsizetype k = 0; nearest->changed[i] && k < nearestLetters[i]->length; ++k)
            verdict.marked[nearestLetters[i]->at + k] = true;
    return verdict;
}

} // namespace answercheck
