// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commandline.h"
#include "testsupport.h"

#include <QBuffer>

using namespace Qt::Literals::StringLiterals;

namespace {

// The editor's command line run in this process: its exit status, what it
// wrote and what it said on the error stream.
struct RunResult
{
    int status;
    QByteArray out;
    QString err;
};

RunResult run(const QStringList &args)
{
    QBuffer out, err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    const int status = commandline::Run(args, out, err);
    return {status, out.data(), QString::fromUtf8(err.data())};
}

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";

} // namespace
