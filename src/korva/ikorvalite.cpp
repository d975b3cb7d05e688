// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/ikorvalite.h"

#include "korva/diskfile.h"
#include "korva/korvahooks.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

void log(const QString &message)
{
    if (korva::hooks().log)
        korva::hooks().log(message);
}

} // namespace

ikorvalite::ikorvalite() : m_entries(1) {}

ikorvalite::~ikorvalite()
{
    Clear();
}

bool ikorvalite::Mount(const QString &path, bool headerOnly)
{
    if (path.isEmpty())
        return false;
    if (m_mounted) {
        log(u" ..this class instance already has a file mounted/n"_s);
        log(u" ..create a new instance or unmount the current file first/n"_s);
        return false;
    }

    // Only a regular file is read; a pipe or a device is refused before it
    // is opened, and a file that is not there is created (empty until Save).
    QByteArray data;
    QString error;
    switch (korva::readFile(path, korva::kMaxFileSize, data, &error)) {
    case korva::ReadStatus::Ok:
        if (!korva::parseFile(data, headerOnly, m_header, m_entries, &m_lastError))
            return false;
        break;
    case korva::ReadStatus::TooLarge:
        m_lastError = u"the file is larger than any KORVA file can be"_s;
        return false;
    case korva::ReadStatus::Failed:
        m_lastError = error;
        return false;
    case korva::ReadStatus::Missing:
        log(u"the specified file doesn't exist, creating new/n"_s);
        if (!korva::createNewFile(path, &m_lastError))
            return false;
        m_header.description = u"KORVA Database File; KORVA Lite version"_s;
        m_header.count = 0;
        m_header.format = 4;
        m_entries.assign(1, korva::Entry());
        log(u"file created/n"_s);
        log(u"file mounted/n"_s);
        break;
    }
    m_path = path;
    m_mounted = true;
    return true;
}

bool ikorvalite::Unmount()
{
    m_path.clear();
    m_mounted = false;
    return false;
}

bool ikorvalite::Save()
{
    if (!m_mounted) {
        m_lastError = u"no file is mounted"_s;
        return false;
    }
    return WriteTo(m_path);
}

bool ikorvalite::SaveAs(const QString &path)
{
    if (path.isEmpty())
        return false;
    if (!WriteTo(path))
        return false;
    m_path = path;
    m_mounted = true;
    return true;
}

bool ikorvalite::WriteTo(const QString &path)
{
    // Everything is checked before the disk is touched: a refused save leaves
    // the file, and the count, as they were.
    QByteArray image;
    QString error;
    korva::Encoding encoding = korva::Encoding::Cp1252;
    const bool fits = korva::serializeFile(m_header, m_entries, image, &error, &encoding);

    auto refuse = [&](const QString &why) {
        m_lastError = why;
        if (!m_quiet && korva::hooks().warn)
            korva::hooks().warn(u"Can't save file"_s,
                                u"The file '"_s + path + u"' couldn't be saved: "_s + why
                                        + u". The file on disk was not changed."_s);
        return false;
    };
    if (!fits)
        return refuse(error);

    korva::SaveOptions options;
    const QFileInfo info(path);
    if (info.isFile() && !(info.permissions() & QFileDevice::WriteOwner)) {
        const bool overwrite = !m_quiet && korva::hooks().askYesNo
                && korva::hooks().askYesNo(
                        u"Readonly File Detected"_s,
                        u"The specified file is readonly. Do you want to save to this location anyways?"_s);
        if (!overwrite) {
            m_lastError = u"the file is read-only"_s;
            return false;
        }
        options.ownerWritable = true;
    }

    if (!korva::saveFile(path, image, &error, options))
        return refuse(error);
    m_header.count = LastIndex();
    // Written as UTF-8, the file now carries the marker, and keeps it.
    if (encoding == korva::Encoding::Utf8)
        m_header.reserved = korva::kUtf8Marker;
    return true;
}

void ikorvalite::Clear()
{
    m_entries.assign(1, korva::Entry());
    m_header.description.clear();
    m_header.format = 0;
    m_header.count = 0;
    Unmount();
}

int ikorvalite::FindKey(const QString &key) const
{
    for (size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].key == key)
            return int(i);
    }
    return -1;
}

void ikorvalite::StoreValue(korva::Entry &entry, const QString &textValue, qint32 numberValue,
                            const QString &note)
{
    // An empty text makes a number entry: callers that store a number pass an
    // empty text, so a text entry can never hold an empty text.
    entry.note = note;
    if (textValue.isEmpty()) {
        entry.isText = korva::kFalse;
        entry.text.clear();
        entry.number = numberValue;
    } else {
        entry.isText = korva::kTrue;
        entry.text = textValue;
        entry.number = 0;
    }
}

void ikorvalite::SetValue(const QString &key, const QString &textValue, qint32 numberValue,
                          const QString &note)
{
    const int index = FindKey(key);
    if (index >= 0) {
        StoreValue(m_entries[size_t(index)], textValue, numberValue, note);
        return;
    }
    korva::Entry &entry = m_entries.emplace_back();
    entry.key = key;
    StoreValue(entry, textValue, numberValue, note);
    m_header.count += 1;
}

void ikorvalite::Assign(const korva::Header &header, std::vector<korva::Entry> entries)
{
    m_header = header;
    m_entries = std::move(entries);
    if (m_entries.empty())
        m_entries.emplace_back();
    m_header.count = LastIndex();
}

void ikorvalite::AppendEntry(const korva::Entry &entry)
{
    m_entries.push_back(entry);
    m_header.count += 1;
}

ikorvalite::Lookup<qint32> ikorvalite::GetNumber(const QString &key, qint32 defaultValue) const
{
    const int index = FindKey(key);
    if (index < 0)
        return {false, defaultValue};
    const korva::Entry &e = m_entries[size_t(index)];
    return {true, e.isText == korva::kFalse ? e.number : defaultValue};
}

ikorvalite::Lookup<QString> ikorvalite::GetText(const QString &key,
                                                const QString &defaultValue) const
{
    const int index = FindKey(key);
    if (index < 0)
        return {false, defaultValue};
    return {true, m_entries[size_t(index)].text};
}

bool ikorvalite::GetValueType(const QString &key) const
{
    const int index = FindKey(key);
    return index >= 0 && m_entries[size_t(index)].isText != korva::kFalse;
}

QString ikorvalite::GetNote(const QString &key) const
{
    const int index = FindKey(key);
    return index >= 0 ? m_entries[size_t(index)].note : QString();
}

korva::Entry ikorvalite::GetEntry(int index) const
{
    if (index < 0 || size_t(index) >= m_entries.size())
        return {};
    return m_entries[size_t(index)];
}

QString ikorvalite::Version()
{
    return u"KORVA Platform v"_s + u"3.44"_s + u" of "_s + u"16Jan2010"_s;
}

bool ikorvalite::FileExists(const QString &path)
{
    return !path.isEmpty() && QFileInfo(path).isFile();
}

void ikorvalite::LogFileAttributes(const QString &path)
{
    // The mask keeps its eight places, archive first and temporary last. Of
    // them, this platform knows a directory, a hidden (dot) file and a file its
    // owner may not write; "normal" means none of the others is set.
    const QFileInfo info(path);
    const bool directory = info.isDir();
    const bool hidden = info.exists() && info.isHidden();
    const bool readOnly = info.exists() && !(info.permissions() & QFileDevice::WriteOwner);
    const bool normal = info.exists() && !directory && !hidden && !readOnly;
    QString mask;
    mask += u'-'; // archive
    mask += u'-'; // compressed
    mask += directory ? u'd' : u'-';
    mask += hidden ? u'h' : u'-';
    mask += normal ? u'n' : u'-';
    mask += readOnly ? u'r' : u'-';
    mask += u'-'; // system
    mask += u'-'; // temporary
    log(u" .. opening file '"_s + path + u"' ["_s + mask + u"]/n"_s);
}
