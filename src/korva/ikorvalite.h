// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "korva/korvaformat.h"

#include <QString>

#include <vector>

// One KORVA key/value database: a header and an entry table held in memory.
// Mount reads the whole file in one go; gets and sets work on the table; only
// Save writes, and it rewrites the whole file atomically. Entry 0 is an empty
// placeholder that always exists; real entries are 1 .. LastIndex().
// Texts are decoded at Mount by the file's marker (see korvaformat.h), and
// Save keeps a UTF-8 file UTF-8; a file without the marker is written in
// Windows-1252 as long as that holds every text, else as UTF-8 with it.
class ikorvalite
{
public:
    template<typename T> struct Lookup
    {
        bool found;
        T value;
    };

    ikorvalite();
    ~ikorvalite();
    ikorvalite(const ikorvalite &) = delete;
    ikorvalite &operator=(const ikorvalite &) = delete;

    bool Mount(const QString &path, bool headerOnly = false);
    bool Unmount();
    // False when nothing was written: no file mounted, the user kept a read-only
    // file, or a limit or the disk refused (then a warning says why).
    bool Save();
    // Saves to another path (the editor's Save As and import) and mounts it there.
    bool SaveAs(const QString &path);
    void Clear();

    void SetValue(const QString &key, const QString &textValue, qint32 numberValue,
                  const QString &note);
    // Adds an entry at the end without looking for its key, so a chapter may
    // hold two cards with the same question.
    void AppendEntry(const korva::Entry &entry);

    Lookup<qint32> GetNumber(const QString &key, qint32 defaultValue) const;
    Lookup<QString> GetText(const QString &key, const QString &defaultValue = QString()) const;
    bool GetValueType(const QString &key) const;
    QString GetNote(const QString &key) const;
    // Out-of-range indices give an empty entry.
    korva::Entry GetEntry(int index) const;

    int FirstIndex() const { return 1; }
    int LastIndex() const { return int(m_entries.size()) - 1; }
    int Count() const { return m_header.count; }

    QString Description() const { return m_header.description; }
    void SetDescription(const QString &text) { m_header.description = text; }
    QString Title() const { return m_header.title; }
    void SetTitle(const QString &text) { m_header.title = text; }
    void SetFormat(qint32 format) { m_header.format = format; }
    // Replaces header and table at once: an editor's whole document, the
    // placeholder first.
    void Assign(const korva::Header &header, std::vector<korva::Entry> entries);
    const korva::Header &Header() const { return m_header; }
    // The encoding the file is in (as read, or as last saved), and the one
    // the next save writes.
    korva::Encoding Encoding() const { return korva::encodingOf(m_header); }
    korva::Encoding SaveEncoding() const { return korva::saveEncoding(m_header, m_entries); }
    const std::vector<korva::Entry> &Entries() const { return m_entries; }

    static QString Version();
    static bool FileExists(const QString &path);
    static void LogFileAttributes(const QString &path);

    bool IsMounted() const { return m_mounted; }
    QString Path() const { return m_path; }
    // Why the last Mount or Save failed.
    QString LastError() const { return m_lastError; }
    // A quiet instance asks nothing and warns of nothing: a read-only file is
    // left alone, and a failed save is only kept in LastError(). For files
    // the user never chose, such as the updater file.
    void SetQuiet(bool quiet) { m_quiet = quiet; }

private:
    int FindKey(const QString &key) const;
    bool WriteTo(const QString &path);
    void StoreValue(korva::Entry &entry, const QString &textValue, qint32 numberValue,
                    const QString &note);

    korva::Header m_header;
    std::vector<korva::Entry> m_entries;
    QString m_path;
    bool m_mounted = false;
    bool m_quiet = false;
    QString m_lastError;
};
