// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chapterdocument.h"

#include <QMainWindow>

class CardPreview;
class ChapterModel;
class FindReplaceDialog;
class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QTableView;
class QUndoStack;

// The chapter editor's window: the chapter's title, its cards in a table
// (typed in place, added, deleted, moved, sorted, found and replaced, every
// change undoable), the current card as the study program shows it, and
// every limit of the file shown before it bites.
class EditorWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit EditorWindow(QWidget *parent = nullptr);
    ~EditorWindow() override;

    // File commands. The ones that would lose changes ask first.
    void NewChapter();
    void OpenChapter();
    bool OpenFile(const QString &path);
    bool Save();
    bool SaveAs();
    void ImportCards();
    bool ImportFile(const QString &path);
    void ExportCards();
    // Asks to save unsaved changes; false when the user cancels.
    bool MaybeSave();

    // Card commands on the table's current selection.
    void AddCard();
    void DeleteCards();
    void MoveCards(int delta);
    void SortBy(int column);
    void GoToNextProblem();
    // The languages the chapter's sides are spoken in (a dialog).
    void EditLanguages();

    ChapterDocument &Document() { return m_document; }
    ChapterModel *Model() const { return m_model; }
    QUndoStack *UndoStack() const { return m_undo; }
    QTableView *Table() const { return m_table; }
    QLineEdit *TitleEdit() const { return m_title; }
    // What the window says of the title: too many bytes, or too long to show.
    QLabel *TitleNote() const { return m_titleBytes; }
    // The status bar's word on the encoding the chapter will be saved in.
    QLabel *EncodingNote() const { return m_encoding; }
    CardPreview *Preview() const { return m_preview; }
    QString LimitText() const;
    // What the card being typed says of its limits (bytes left or a
    // character that cannot be stored).
    void ShowTypingFeedback(int row, int column, const QString &text);
    QStringList RecentFiles() const;
    // The chapter's file name, "Untitled" before it is saved.
    QString DisplayName() const;

protected:
    void closeEvent(QCloseEvent *event) override;
    // Files dropped on the window: a chapter is opened, a list of cards imported.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void BuildActions();
    void UpdateTitleBar();
    void UpdateStatus();
    void UpdatePreview();
    void UpdateActions();
    void AddRecentFile(const QString &path);
    void FillRecentMenu();
    QList<int> SelectedRows() const;
    bool WriteTo(const QString &path);

    ChapterDocument m_document;
    ChapterModel *m_model;
    QUndoStack *m_undo;
    QTableView *m_table;
    QLineEdit *m_title;
    QLabel *m_titleBytes;
    CardPreview *m_preview;
    QLabel *m_count;
    QLabel *m_card;
    QLabel *m_problems;
    QLabel *m_encoding;
    QMenu *m_recent;
    FindReplaceDialog *m_find = nullptr;
    int m_sortColumn = -1;
    bool m_sortDescending = false;

    QAction *m_save;
    QAction *m_saveAs;
    QAction *m_import;
    QAction *m_add;
    QAction *m_delete;
    QAction *m_moveUp;
    QAction *m_moveDown;
    QAction *m_findReplace;
    QAction *m_nextProblem;
    QAction *m_languages;
    QList<QAction *> m_sortActions;
};
