// SPDX-License-Identifier: GPL-3.0-or-later
#include "printcommand.h"

#include "cards/progressfile.h"
#include "korva/chapterformat.h"
#include "korva/diskfile.h"
#include "korva/ikorvalite.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace printcommand {

namespace {

// 32,767 cards of five texts each: a few megabytes in any real file.
constexpr qint64 kMaxProgressSize = 64 * 1024 * 1024;

bool fail(QString *error, const QString &why)
{
    if (error)
        *error = why;
    return false;
}

} // namespace

bool Read(const QString &path, Source &out, QString *error)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return fail(error, info.exists() ? u"not a regular file"_s : u"no such file"_s);
    Source source;
    if (info.suffix().compare(u"vxs"_s, Qt::CaseInsensitive) == 0) {
        QByteArray data;
        QString why;
        if (korva::readFile(path, kMaxProgressSize, data, &why) != korva::ReadStatus::Ok
            || !ReadProgressImage(data, source.cards, &why))
            return fail(error, u"not a progress file, or a damaged one: "_s + why);
        // The last record is the deck's empty slot, not a card.
        if (!source.cards.empty())
            source.cards.pop_back();
        source.troubleMarks = true;
        out = std::move(source);
        return true;
    }
    ikorvalite db;
    if (!db.Mount(path, false))
        return fail(error, u"not a KORVA file, or a damaged one: "_s + db.LastError());
    if (db.Description() != korva::kChapterDescription)
        return fail(error, u"not a chapter file (its description is '%1')"_s.arg(db.Description()));
    // The name the chapter window gives it, and the texts as the study program shows them.
    const QString chapter = db.Title().isEmpty() ? info.fileName() : db.Title();
    for (int i = db.FirstIndex(); i <= db.LastIndex(); ++i) {
        const korva::Entry e = db.GetEntry(i);
        Card card;
        card.question = e.key;
        card.answer = e.text;
        ReplaceUmlautEscapes(card.question);
        ReplaceUmlautEscapes(card.answer);
        card.note = e.note;
        card.chapter = chapter;
        source.cards.push_back(card);
    }
    out = std::move(source);
    return true;
}

} // namespace printcommand
