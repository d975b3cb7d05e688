// SPDX-License-Identifier: GPL-3.0-or-later
#include "pdftext.h"

#include <QProcess>
#include <QTemporaryFile>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

QString PdfText::page(int number) const
{
    QStringList out;
    for (const PdfWord &w : words)
        if (w.page == number)
            out << w.text;
    return out.join(u' ');
}

PdfText ReadPdf(const QString &path)
{
    PdfText out;
    QProcess p;
    p.start(u"pdftotext"_s, {u"-bbox"_s, path, u"-"_s});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return out;
    QXmlStreamReader xml(p.readAllStandardOutput());
    qreal width = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto a = xml.attributes();
        if (xml.name() == u"title"_s) {
            out.title = xml.readElementText();
        } else if (xml.name() == u"page"_s) {
            ++out.pages;
            width = a.value(u"width"_s).toDouble();
        } else if (xml.name() == u"word"_s) {
            const QRectF box(QPointF(a.value(u"xMin"_s).toDouble(), a.value(u"yMin"_s).toDouble()),
                             QPointF(a.value(u"xMax"_s).toDouble(), a.value(u"yMax"_s).toDouble()));
            out.words.push_back({xml.readElementText(), out.pages, box, width});
        }
    }
    out.read = out.pages > 0;
    return out;
}

PdfText ReadPdfBytes(const QByteArray &pdf)
{
    QTemporaryFile file;
    if (!file.open() || file.write(pdf) != pdf.size() || !file.flush())
        return PdfText();
    return ReadPdf(file.fileName());
}
