// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/sessionfile.h"

#include "cards/deck.h"
#include "cards/progressfile.h"
#include "core/keyvaluetext.h"
#include "core/programstate.h"
#include "korva/diskfile.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <filesystem>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace sessionfile {

namespace {

const QString kDeckName = u"lastsession.vxs"_s;
const QString kStateName = u"lastsession.txt"_s;
const QString kFormat = u"1"_s;
// As for progress files: far beyond the largest deck.
constexpr qint64 kMaxDeckSize = 64 * 1024 * 1024;
constexpr qint64 kMaxStateSize = 64 * 1024;

QString hashOf(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString side(bool answer)
{
    return answer ? u"answer"_s : u"question"_s;
}

// The side named by text, or nothing for any other text.
std::optional<bool> answerSide(const QString *text)
{
    if (text && *text == u"answer"_s)
        return true;
    if (text && *text == u"question"_s)
        return false;
    return std::nullopt;
}

bool fail(QString *error, const QString &why)
{
    if (error)
        *error = why;
    return false;
}

QString home(const QString &name)
{
    return g_BaseDirectory + u'/' + name;
}

// One of the session's two files, whole; why not in `why`.
bool readPart(const QString &path, qint64 maxSize, QByteArray &bytes, QString &why)
{
    switch (korva::readFile(path, maxSize, bytes, &why)) {
    case korva::ReadStatus::Ok:
        return true;
    case korva::ReadStatus::TooLarge:
        why = u"it is far larger than a kept session can be"_s;
        return false;
    case korva::ReadStatus::Missing:
    case korva::ReadStatus::Failed:
        break;
    }
    return false;
}

} // namespace

QString DeckPath()
{
    return home(kDeckName);
}

QString StatePath()
{
    return home(kStateName);
}

QString SetAsideDeckName()
{
    return u"lastsession-damaged.vxs"_s;
}

QString SetAsideStateName()
{
    return u"lastsession-damaged.txt"_s;
}

bool Exists()
{
    // A dangling link or a FIFO counts too: it is there, and damaged.
    return QFileInfo(DeckPath()).exists() || QFileInfo(DeckPath()).isSymLink()
            || QFileInfo(StatePath()).exists() || QFileInfo(StatePath()).isSymLink();
}

bool Write(const Deck &deck, const State &state, QString *error)
{
    QByteArray image;
    if (!WriteProgressImage(deck, image, error))
        return false;
    const keyvalue::Pairs pairs {
            {u"format"_s, kFormat},
            {u"deck_bytes"_s, QString::number(image.size())},
            {u"deck_sha256"_s, hashOf(image)},
            {u"card"_s, QString::number(state.card)},
            {u"side"_s, side(state.answerShown)},
            {u"first_side"_s, side(state.answerFirst)},
            {u"trouble_only"_s, state.troubleOnly ? u"true"_s : u"false"_s},
            {u"typed_right"_s, QString::number(state.typedRight)},
            {u"typed_wrong"_s, QString::number(state.typedWrong)},
    };
    // The deck first: a state that names another deck is found out on reading.
    return korva::saveFile(DeckPath(), image, error)
            && korva::saveFile(StatePath(),
                               keyvalue::Format(pairs, u"Vocabrix: the last session studied"_s),
                               error);
}

bool Read(std::vector<Card> &cards, State &state, QString *error)
{
    QByteArray stateText, image;
    QString why;
    if (!readPart(StatePath(), kMaxStateSize, stateText, why))
        return fail(error, kStateName + u": "_s + why);
    if (!readPart(DeckPath(), kMaxDeckSize, image, why))
        return fail(error, kDeckName + u": "_s + why);

    const keyvalue::Pairs pairs = keyvalue::Parse(stateText);
    auto value = [&pairs](const char16_t *key) {
        return keyvalue::Find(pairs, QString::fromUtf16(key));
    };
    const QString *format = value(u"format");
    if (!format || *format != kFormat)
        return fail(error, kStateName + u" is not a session this version keeps"_s);
    const QString *bytes = value(u"deck_bytes");
    const QString *hash = value(u"deck_sha256");
    if (!bytes || *bytes != QString::number(image.size()) || !hash || *hash != hashOf(image))
        return fail(error, kDeckName + u" is not the deck that "_s + kStateName + u" belongs to"_s);

    std::vector<Card> read;
    if (!ReadProgressImage(image, read, &why))
        return fail(error, kDeckName + u": "_s + why);

    State s;
    bool ok = false;
    const QString *card = value(u"card");
    s.card = card ? card->toInt(&ok) : 0;
    if (!ok || s.card < 0 || s.card >= int(read.size()))
        return fail(error, kStateName + u" names no card of the deck"_s);
    const std::optional<bool> shown = answerSide(value(u"side"));
    const std::optional<bool> first = answerSide(value(u"first_side"));
    const QString *only = value(u"trouble_only");
    if (!shown || !first || !only || (*only != u"true"_s && *only != u"false"_s))
        return fail(error, kStateName + u" is damaged"_s);
    s.answerShown = *shown;
    s.answerFirst = *first;
    s.troubleOnly = *only == u"true"_s;
    for (const auto &[key, count] :
         {std::pair {u"typed_right", &s.typedRight}, std::pair {u"typed_wrong", &s.typedWrong}}) {
        const QString *text = value(key);
        *count = text ? text->toInt(&ok) : 0;
        if (text && (!ok || *count < 0))
            return fail(error, kStateName + u" is damaged"_s);
    }

    cards = std::move(read);
    state = s;
    return true;
}

bool SetAside()
{
    bool moved = true;
    for (const auto &[from, to] : {std::pair {DeckPath(), home(SetAsideDeckName())},
                                   std::pair {StatePath(), home(SetAsideStateName())}}) {
        const std::filesystem::path source(from.toStdU16String()), target(to.toStdU16String());
        std::error_code ec;
        if (!std::filesystem::exists(std::filesystem::symlink_status(source, ec)))
            continue;
        // A rename in place: a FIFO, a link or a folder goes aside unopened.
        std::filesystem::remove(target, ec);
        std::filesystem::rename(source, target, ec);
        moved = moved && !ec;
    }
    return moved;
}

} // namespace sessionfile
