// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/progressfile.h"

#include "cards/deck.h"
#include "core/gcommondialog.h"
#include "core/log.h"
#include "core/prompter.h"
#include "korva/bytestream.h"
#include "korva/diskfile.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFilter = u"Vocabrix Save File|*.vxs"_s;
const QString kExtension = u"vxs"_s;
const QString kPlace = u"progress"_s; // where its dialogs open: see GCommonDialog

// A deck of 32,767 cards with every text at its longest from a chapter file
// stays far below this; anything larger is not a progress file.
constexpr qint64 kMaxProgressFileSize = 64 * 1024 * 1024;

} // namespace

namespace {

constexpr qint16 kUtf8Marker = -32768;
const QString kUtf8Name = u"utf-8"_s;

bool writeImage(const Deck &deck, korva::Encoding encoding, QByteArray &out, QString *error,
                bool *cannotHold)
{
    const int count = deck.UBound() - deck.LBound();
    QByteArray image;
    image.reserve(11 + qsizetype(count + 1) * 96);
    korva::ByteWriter w(image, encoding);
    if (encoding == korva::Encoding::Utf8) {
        w.writeInt16(kUtf8Marker);
        w.writeText(kUtf8Name);
    }
    w.writeInt16(qint16(count));
    for (int i = deck.LBound(); i <= deck.UBound(); ++i) {
        const Card &c = deck[i];
        const bool ok = w.writeText(c.question) && w.writeText(c.answer) && w.writeText(c.note)
                && w.writeText(c.spare);
        w.writeInt16(c.trouble);
        w.writeInt16(c.timesViewed);
        if (!ok || !w.writeText(c.chapter)) {
            *cannotHold = w.cannotHold();
            if (error)
                *error = u"card %1 ('%2'): "_s.arg(i + 1).arg(c.question) + w.error();
            return false;
        }
    }
    out = std::move(image);
    return true;
}

} // namespace

bool WriteProgressImage(const Deck &deck, QByteArray &out, QString *error)
{
    bool cannotHold = false;
    if (writeImage(deck, korva::Encoding::Cp1252, out, error, &cannotHold))
        return true;
    return cannotHold && writeImage(deck, korva::Encoding::Utf8, out, error, &cannotHold);
}

bool ReadProgressImage(QByteArrayView data, std::vector<Card> &cards, QString *error,
                       qsizetype *used, korva::Encoding *encoding)
{
    auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    korva::Encoding layout = korva::Encoding::Cp1252;
    qsizetype start = 0;
    korva::ByteReader marker(data);
    if (marker.readInt16() == kUtf8Marker && marker.readText() == kUtf8Name && marker.ok()) {
        layout = korva::Encoding::Utf8;
        start = marker.position();
    }
    korva::ByteReader r(data.sliced(start), layout);
    const qint16 count = r.readInt16();
    if (!r.ok())
        return fail(u"the file is empty"_s);
    if (count < 0)
        return fail(u"it gives a card count of %1"_s.arg(count));

    std::vector<Card> read(size_t(count) + 1);
    for (int i = 0; i <= count; ++i) {
        Card &c = read[size_t(i)];
        c.question = r.readText();
        c.answer = r.readText();
        c.note = r.readText();
        c.spare = r.readText();
        c.trouble = r.readInt16();
        c.timesViewed = r.readInt16();
        c.chapter = r.readText();
        if (r.badText())
            return fail(u"card %1 holds a text that is not UTF-8"_s.arg(i + 1));
        if (!r.ok())
            return fail(u"it ends inside card %1 of %2"_s.arg(i + 1).arg(count + 1));
    }
    // Whatever follows the last card is not read.
    if (used)
        *used = start + r.position();
    if (encoding)
        *encoding = layout;
    cards = std::move(read);
    return true;
}

void SaveProgress()
{
    Log(u"Writing progress to disk/n"_s);

    const std::optional<QString> chosen =
            GCommonDialog::AskSave(u"Save As"_s, kFilter, kExtension, {}, kPlace);
    if (!chosen)
        return;
    const QString path = *chosen;

    // The file is replaced in one step, so an earlier progress file survives
    // anything that stops this save.
    QByteArray image;
    QString error;
    const bool written =
            WriteProgressImage(g_Deck, image, &error) && korva::saveFile(path, image, &error);
    if (!written) {
        MsgBox(u"Progress Not Saved"_s,
               u"The progress file '"_s + path + u"' couldn't be written: "_s + error
                       + u". Nothing was changed on disk."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return;
    }
    Log(u" .. wrote "_s + QString::number(g_Deck.UBound() - g_Deck.LBound())
        + u" nodes to disk/n"_s);
}

namespace modMain {

bool LoadProgress()
{
    Log(u"Reading saved progress from file/n"_s);

    const std::optional<QString> chosen =
            GCommonDialog::AskOpen(u"Open File"_s, kFilter, kExtension, kPlace);
    return chosen && LoadProgressFrom(*chosen);
}

bool LoadProgressFrom(const QString &path)
{
    // A file that is not there is no error; anything but a file is, below.
    if (korva::inspectPath(path).kind == korva::PathKind::Missing)
        return false;

    // The extension is compared exactly: "VXS" is refused too.
    if (path.mid(path.lastIndexOf(u'.') + 1) != kExtension) {
        MsgBox(u"Incompatible File Detected"_s, u"This program cannot open this type of file"_s,
               MsgIcon::Information, MsgButtons::OK);
        return false;
    }

    // The whole file is read and checked before the deck is touched, so a
    // damaged file loses nothing.
    std::vector<Card> cards;
    QByteArray data;
    QString error;
    bool ok = false;
    switch (korva::readFile(path, kMaxProgressFileSize, data, &error)) {
    case korva::ReadStatus::Ok:
        ok = ReadProgressImage(data, cards, &error);
        break;
    case korva::ReadStatus::TooLarge:
        error = u"it is far larger than any progress file"_s;
        break;
    case korva::ReadStatus::Missing:
    case korva::ReadStatus::Failed:
        break;
    }
    if (!ok) {
        MsgBox(u"Damaged Progress File"_s,
               u"The file '"_s + path + u"' couldn't be read: "_s + error
                       + u". The cards you are studying were left as they were."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }

    FlushData(false);
    const int count = int(cards.size()) - 1;
    g_Deck.cards() = std::move(cards);
    Log(u" .. read "_s + QString::number(count) + u" of "_s + QString::number(count)
        + u" nodes from disk/n"_s);
    return true;
}

} // namespace modMain
