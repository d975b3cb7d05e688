// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cardtext.h"
#include "korva/korvaformat.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QTableWidget;

// Reading cards from a text file: the delimiter detected (and changeable),
// whether the first line names the columns (detected, changeable), which
// columns hold question, answer and note, and a preview of the first
// cards as they will be added, with any that cannot be stored marked.
class ImportDialog : public QDialog
{
    Q_OBJECT

public:
    ImportDialog(const QByteArray &content, const QString &path, QWidget *parent = nullptr);

    QComboBox *delimiter;
    QCheckBox *quoted;
    QCheckBox *html;
    QCheckBox *headerRow;
    QComboBox *questionColumn;
    QComboBox *answerColumn;
    QComboBox *noteColumn; // its first item is "(none)"
    QTableWidget *preview;
    QLabel *summary;

    // The encoding of the chapter the cards go into; the preview checks the
    // cards as they will be written there.
    void SetChapterEncoding(korva::Encoding encoding);

    // The cards the file gives with the choices made; empty on a parse error.
    std::vector<korva::Entry> Cards() const;
    QString ParseError() const { return m_error; }
    const cardtext::Layout &Layout() const { return m_layout; }

private:
    void Reparse();
    void FillColumns();
    void UpdatePreview();

    QByteArray m_data;
    cardtext::Layout m_layout;
    std::vector<cardtext::Row> m_rows;
    QString m_error;
    int m_columns = 0;
    korva::Encoding m_chapterEncoding = korva::Encoding::Cp1252;
    bool m_headerChosen = false; // headerRow was set by the person, not detected
};
