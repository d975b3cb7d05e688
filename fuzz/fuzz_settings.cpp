// SPDX-License-Identifier: GPL-3.0-or-later
// The settings file read by the colour metrics and the program's options.
//
// Properties: every colour entry is read (the last of a name wins); writing
// the colours back and reading again gives the same colours; a file that
// does not mount is not touched.
#include "core/programstate.h"
#include "fuzzsupport.h"
#include "korva/ikorvalite.h"
#include "korva/korvahooks.h"
#include "settings/r_data.h"
#include "settings/settingskeys.h"

#include <QMap>

#include <cstdint>

namespace {

QMap<QString, quint32> colours(const r_data &metrics)
{
    QMap<QString, quint32> out;
    for (size_t i = 1; i < metrics.Colors().size(); ++i)
        out.insert(metrics.Colors()[i].name, metrics.Colors()[i].color);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *raw, size_t size)
{
    const QByteArrayView data(reinterpret_cast<const char *>(raw), qsizetype(size));
    korva::setHooks({});
    const QString path = fuzz::scratch(QStringLiteral("sys.zel"));
    fuzz::writeFile(path, data);

    g_MasterDb = std::make_unique<ikorvalite>();
    if (!g_MasterDb->Mount(path, false)) {
        g_MasterDb.reset();
        fuzz::check(fuzz::readFile(path) == data, "refused file not touched");
        return 0;
    }
    int expected = 0;
    QMap<QString, quint32> read;
    for (int i = g_MasterDb->FirstIndex(); i <= g_MasterDb->LastIndex(); ++i) {
        const korva::Entry e = g_MasterDb->GetEntry(i);
        if (e.isText == korva::kFalse && e.note == settings::kGroupColors) {
            ++expected;
            if (!e.key.isEmpty())
                read.insert(e.key, quint32(e.number));
        }
    }
    r_data metrics;
    fuzz::check(metrics.ReadColors() == expected, "every colour entry counted");
    fuzz::check(colours(metrics) == read, "the last of a name wins");
    for (const QString &key :
         {settings::kShowMouseHover, settings::kTroubleByDefault, settings::kAlphaLevel,
          settings::kAlphaEffects, settings::kFileListCount})
        g_MasterDb->GetNumber(key, settings::kTrue);
    g_MasterDb->GetText(settings::kStartHint);

    metrics.WriteColors();
    g_MasterDb = std::make_unique<ikorvalite>();
    fuzz::check(g_MasterDb->Mount(path, false), "written file mounts");
    r_data again;
    again.ReadColors();
    fuzz::check(colours(again) == colours(metrics), "colours read back");
    g_MasterDb.reset();
    return 0;
}
