// SPDX-License-Identifier: GPL-3.0-or-later
#include "chapterdocument.h"

#include "chapterrules.h"
#include "korva/chapterformat.h"
#include "korva/diskfile.h"
#include "korva/ikorvalite.h"

using namespace Qt::Literals::StringLiterals;

void ChapterDocument::New()
{
    m_header = korva::Header();
    m_header.description = korva::kChapterDescription;
    m_header.format = 4;
    m_placeholder = korva::Entry();
    m_cards.clear();
    m_path.clear();
    m_readOnly = false;
    m_wideCards = -1;
    m_languages = m_savedLanguages = ChapterLanguages();
    m_languagesProblem.clear();
}

ChapterDocument::OpenResult ChapterDocument::Open(const QString &path, bool allowOtherFiles,
                                                  QString *error)
{
    // Mounting a file that is not there would create it.
    const korva::PathInfo info = korva::inspectPath(path);
    if (info.kind == korva::PathKind::Missing) {
        if (error)
            *error = u"the file does not exist"_s;
        return OpenResult::NotFound;
    }
    ikorvalite db;
    if (!db.Mount(path, false)) {
        if (error)
            *error = db.LastError();
        return OpenResult::Damaged;
    }
    const bool chapter = db.Description() == korva::kChapterDescription;
    if (!chapter && !allowOtherFiles) {
        if (error)
            *error = db.Description();
        return OpenResult::NotChapter;
    }
    m_header = db.Header();
    m_placeholder = db.Entries().front();
    m_cards.assign(db.Entries().begin() + 1, db.Entries().end());
    m_path = path;
    m_readOnly = !chapter;
    m_wideCards = -1;
    m_languagesProblem.clear();
    if (!chapterlanguages::Read(path, m_languages, &m_languagesProblem))
        m_languages = ChapterLanguages();
    m_savedLanguages = m_languages;
    return OpenResult::Opened;
}

bool ChapterDocument::HeaderNeedsUtf8() const
{
    return korva::encodingOf(m_header) == korva::Encoding::Utf8
            || !chapterrules::HoldsCp1252(m_placeholder)
            || korva::headerRecordSize(m_header, korva::Encoding::Cp1252) < 0;
}

int ChapterDocument::WideCards() const
{
    if (m_wideCards < 0) {
        m_wideCards = 0;
        for (const korva::Entry &card : m_cards)
            m_wideCards += chapterrules::HoldsCp1252(card) ? 0 : 1;
    }
    return m_wideCards;
}

korva::Encoding ChapterDocument::SaveEncoding() const
{
    return HeaderNeedsUtf8() || WideCards() > 0 ? korva::Encoding::Utf8 : korva::Encoding::Cp1252;
}

korva::Encoding ChapterDocument::EncodingWith(int row, const korva::Entry &card) const
{
    const int others = WideCards() - (chapterrules::HoldsCp1252(Card(row)) ? 0 : 1);
    return HeaderNeedsUtf8() || others > 0 || !chapterrules::HoldsCp1252(card)
            ? korva::Encoding::Utf8
            : korva::Encoding::Cp1252;
}

QString ChapterDocument::CardProblem(int row) const
{
    const korva::Entry &e = m_cards[size_t(row)];
    return chapterrules::CheckCard(e.key, e.text, e.note, SaveEncoding());
}

std::optional<ChapterDocument::Problem> ChapterDocument::FirstProblem() const
{
    const QString title =
            chapterrules::CheckTitle(m_header.title, SaveEncoding(), m_header.reserved);
    if (!title.isEmpty())
        return Problem {-1, title};
    if (m_cards.size() > size_t(korva::kMaxEntries))
        return Problem {-1,
                        u"it has %1 cards; a chapter holds %2 at most"_s.arg(m_cards.size())
                                .arg(korva::kMaxEntries)};
    for (int row = 0; row < CardCount(); ++row) {
        const QString why = CardProblem(row);
        if (!why.isEmpty())
            return Problem {row, why};
    }
    return std::nullopt;
}

bool ChapterDocument::Save(const QString &path, Problem *problem)
{
    if (m_readOnly) {
        if (problem)
            *problem = {-1, u"it was opened for reading only"_s};
        return false;
    }
    if (const std::optional<Problem> found = FirstProblem()) {
        if (problem)
            *problem = *found;
        return false;
    }
    std::vector<korva::Entry> entries;
    entries.reserve(m_cards.size() + 1);
    entries.push_back(m_placeholder);
    entries.insert(entries.end(), m_cards.begin(), m_cards.end());
    ikorvalite db;
    db.Assign(m_header, std::move(entries));
    if (!db.SaveAs(path)) {
        if (problem)
            *problem = {-2, db.LastError()};
        return false;
    }
    m_header.reserved = db.Header().reserved; // the marker, once written
    // A chapter saved under another name takes its languages along, and a
    // file of languages left there by an older chapter goes.
    const bool moved = path != m_path;
    m_path = path;
    if (moved || m_languages != m_savedLanguages) {
        QString why;
        if (!chapterlanguages::Write(path, m_languages, &why)) {
            if (problem)
                *problem = {-3, why};
            return false;
        }
        m_savedLanguages = m_languages;
    }
    return true;
}
