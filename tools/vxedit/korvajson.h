// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class ikorvalite;

// A mounted KORVA file as one JSON object: description, format, count, title,
// reserved, the encoding its texts are stored in ("Windows-1252" or "UTF-8")
// and every entry (the placeholder first) with key, raw is_text flag, text,
// number and note. Texts are UTF-8.
QByteArray KorvaToJson(const ikorvalite &db);
