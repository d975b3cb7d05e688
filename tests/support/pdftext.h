// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>

#include <vector>

// A PDF read back as people read it, with poppler's pdftotext: every word
// with its page and place (in points), in reading order.
struct PdfWord
{
    QString text;
    int page = 0; // from 1
    QRectF box;
    qreal pageWidth = 0;
};

struct PdfText
{
    bool read = false; // pdftotext ran and understood the file
    int pages = 0;
    QString title; // the document's own, from its information
    std::vector<PdfWord> words;

    // A page's words, one space between each.
    QString page(int number) const;
};

PdfText ReadPdf(const QString &path);
PdfText ReadPdfBytes(const QByteArray &pdf);
