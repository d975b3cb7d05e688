// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/chapterlanguages.h"
#include "korva/korvaformat.h"

#include <QString>

#include <optional>
#include <vector>

// A chapter as the editor holds it: the file's header and placeholder as they
// were read, and one entry per card (key = question, text = answer, note =
// note). Entries nobody edits are written back exactly as read, so a chapter
// opened and saved unchanged keeps every byte, in the encoding it had.
class ChapterDocument
{
public:
    enum class OpenResult { Opened, NotFound, Damaged, NotChapter };

    struct Problem
    {
        int row = -1; // the card, from 0; -1 for the chapter itself; -2 when the
                      // engine refused the write and has said so (or the user chose not to);
                      // -3 when the chapter was written but its languages were not
        QString why;
    };

    ChapterDocument() { New(); }

    // An empty chapter, as a new file of the editor starts.
    void New();
    // Reads a file. A KORVA file that is no chapter is refused with
    // NotChapter unless allowOtherFiles, which opens it for reading only.
    OpenResult Open(const QString &path, bool allowOtherFiles, QString *error);
    // Checks every card and the title first; writes nothing and names the
    // first problem when there is one. The write itself is the engine's
    // (atomic, and it asks before it overwrites a read-only file).
    bool Save(const QString &path, Problem *problem);

    std::optional<Problem> FirstProblem() const;
    QString CardProblem(int row) const;

    QString Title() const { return m_header.title; }
    void SetTitle(const QString &title) { m_header.title = title; }
    QString Reserved() const { return m_header.reserved; }

    // The encoding a save writes: UTF-8 for a chapter that is UTF-8 already or
    // has a text that Windows-1252 cannot hold, else Windows-1252.
    korva::Encoding SaveEncoding() const;
    // The same, were the card at row as given (a card being typed).
    korva::Encoding EncodingWith(int row, const korva::Entry &card) const;

    int CardCount() const { return int(m_cards.size()); }
    const korva::Entry &Card(int row) const { return m_cards[size_t(row)]; }
    // Whoever takes the cards to change them changes what the encoding is
    // worked out from.
    std::vector<korva::Entry> &Cards()
    {
        m_wideCards = -1;
        return m_cards;
    }
    const std::vector<korva::Entry> &Cards() const { return m_cards; }

    // The languages the chapter's sides are spoken in, kept in a file of their
    // own beside it and written with it when they changed (or the chapter
    // moved to another file).
    const ChapterLanguages &Languages() const { return m_languages; }
    void SetLanguages(const ChapterLanguages &languages) { m_languages = languages; }
    // Why the languages beside the opened chapter were left out; empty when
    // they were read (or there were none).
    QString LanguagesProblem() const { return m_languagesProblem; }

    QString Path() const { return m_path; }
    bool ReadOnly() const { return m_readOnly; }

private:
    bool HeaderNeedsUtf8() const;
    int WideCards() const;

    korva::Header m_header;
    korva::Entry m_placeholder;
    std::vector<korva::Entry> m_cards;
    QString m_path;
    bool m_readOnly = false;
    // Cards that Windows-1252 cannot hold; -1 until counted after a change.
    mutable int m_wideCards = -1;
    ChapterLanguages m_languages;
    ChapterLanguages m_savedLanguages; // as the file beside the chapter has them
    QString m_languagesProblem;
};
