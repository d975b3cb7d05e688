// SPDX-License-Identifier: GPL-3.0-or-later
#include "editorwindow.h"

#include "cardtext.h"
#include "chaptermodel.h"
#include "chapterrules.h"
#include "core/gcommondialog.h"
#include "core/prompter.h"
#include "editcommands.h"
#include "importdialog.h"
#include "korva/diskfile.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QUndoStack>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

// The editor's file commands: new, open, save, import and export, the recent
// files, and files dropped on the window.

namespace {

const QString kChapterFilter = u"Vocabrix Data File|*.zel"_s;
constexpr int kMaxRecent = 8;
constexpr qint64 kMaxImportSize = 64 * 1024 * 1024;

} // namespace

void EditorWindow::NewChapter()
{
    m_document.New();
    m_undo->clear();
    m_model->Reload(); // which redraws the preview
    m_sortColumn = -1;
    UpdateTitleBar();
    UpdateStatus();
    UpdateActions();
}

bool EditorWindow::MaybeSave()
{
    if (m_undo->isClean())
        return true;
    const MsgResult answer =
            MsgBox(u"Save Changes?"_s,
                   u"The chapter '%1' has changes that are not saved. Save them before going on?"_s
                           .arg(DisplayName()),
                   MsgIcon::Question, MsgButtons::YesNoCancel);
    if (answer == MsgResult::Yes)
        return Save();
    return answer == MsgResult::No;
}

void EditorWindow::OpenChapter()
{
    if (!MaybeSave())
        return;
    if (const auto chosen =
                GCommonDialog::AskOpen(u"Open Chapter"_s, kChapterFilter, u"zel"_s, u"chapter"_s))
        OpenFile(*chosen);
}

bool EditorWindow::OpenFile(const QString &path)
{
    ChapterDocument opened;
    QString error;
    ChapterDocument::OpenResult result = opened.Open(path, false, &error);
    if (result == ChapterDocument::OpenResult::NotChapter) {
        const MsgResult look =
                MsgBox(u"Not a Chapter"_s,
                       u"The file '%1' is a Vocabrix data file, but not a chapter (its description "
                       "is '%2'), so it "
                       "can't be edited here.\n\nOpen it read-only to look inside?"_s.arg(path,
                                                                                          error),
                       MsgIcon::Question, MsgButtons::YesNo);
        if (look != MsgResult::Yes)
            return false;
        result = opened.Open(path, true, &error);
    }
    if (result == ChapterDocument::OpenResult::NotFound) {
        MsgBox(u"Can't Open Chapter"_s, u"The file '%1' does not exist."_s.arg(path),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }
    if (result == ChapterDocument::OpenResult::Damaged) {
        MsgBox(u"Can't Open Chapter"_s,
               u"The file '%1' is not a Vocabrix data file, or it is damaged: %2."_s.arg(path,
                                                                                         error),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }
    m_document = opened;
    m_undo->clear();
    m_model->Reload();
    m_sortColumn = -1;
    AddRecentFile(path);
    UpdateTitleBar();
    UpdateStatus();
    UpdateActions();
    if (m_model->rowCount() > 0)
        m_table->setCurrentIndex(m_model->index(0, 0)); // the preview follows
    if (!m_document.LanguagesProblem().isEmpty())
        MsgBox(u"Chapter Languages Left Out"_s,
               u"The chapter's languages can't be read (%1); Vocabrix speaks it in the "
               "languages of its options. Choose them again with Edit > Chapter Languages."_s.arg(
                       m_document.LanguagesProblem()),
               MsgIcon::Exclamation, MsgButtons::OK);
    return true;
}

bool EditorWindow::Save()
{
    if (m_document.Path().isEmpty() || m_document.ReadOnly())
        return SaveAs();
    return WriteTo(m_document.Path());
}

bool EditorWindow::SaveAs()
{
    if (m_document.ReadOnly())
        return false;
    const auto chosen = GCommonDialog::AskSave(u"Save Chapter As"_s, kChapterFilter, u"zel"_s,
                                               m_document.Path(), u"chapter"_s);
    return chosen && WriteTo(*chosen);
}

bool EditorWindow::WriteTo(const QString &path)
{
    // An edit still open in the table ends when the table takes the focus
    // back, and so is saved too.
    m_table->setFocus();
    ChapterDocument::Problem problem;
    if (!m_document.Save(path, &problem)) {
        if (problem.row >= 0) {
            m_table->setCurrentIndex(m_model->index(problem.row, 0));
            m_table->scrollTo(m_model->index(problem.row, 0));
            MsgBox(u"Chapter Not Saved"_s,
                   u"Card %1 can't be saved: %2. Nothing was written."_s.arg(problem.row + 1)
                           .arg(problem.why),
                   MsgIcon::Exclamation, MsgButtons::OK);
        } else if (problem.row == -1) {
            MsgBox(u"Chapter Not Saved"_s,
                   u"The chapter can't be saved: %1. Nothing was written."_s.arg(problem.why),
                   MsgIcon::Exclamation, MsgButtons::OK);
        } else if (problem.row == -3) {
            MsgBox(u"Languages Not Saved"_s,
                   u"The chapter was saved, but its languages were not: %1."_s.arg(problem.why),
                   MsgIcon::Exclamation, MsgButtons::OK);
            UpdateTitleBar();
        }
        return false;
    }
    m_undo->setClean();
    AddRecentFile(path);
    UpdateTitleBar();
    statusBar()->showMessage(
            m_document.CardCount() < 2
                    ? u"Saved. A chapter needs at least two cards before Vocabrix can study it."_s
                    : u"Saved."_s,
            6000);
    return true;
}

void EditorWindow::ImportCards()
{
    if (const auto chosen = GCommonDialog::AskOpen(u"Import Cards"_s,
                                                   u"Card lists|*.tsv;*.txt;*.csv|All files|*"_s,
                                                   {}, u"list"_s))
        ImportFile(*chosen);
}

bool EditorWindow::ImportFile(const QString &path)
{
    if (m_document.ReadOnly())
        return false;
    auto refuse = [&path](const QString &why) {
        MsgBox(u"Can't Import"_s, u"The file '%1' can't be read: %2."_s.arg(path, why),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    };
    if (!m_document.Path().isEmpty() && korva::sameFile(path, m_document.Path()))
        return refuse(u"it is the chapter you are editing; cards are imported from a list of "
                      "text"_s);
    QByteArray content;
    QString error;
    switch (korva::readFile(path, kMaxImportSize, content, &error)) {
    case korva::ReadStatus::Ok:
        break;
    case korva::ReadStatus::TooLarge:
        MsgBox(u"Can't Import"_s, u"The file '%1' is too large for a list of cards."_s.arg(path),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    case korva::ReadStatus::Missing:
    case korva::ReadStatus::Failed:
        return refuse(error);
    }
    ImportDialog importer(content, path, this);
    importer.SetChapterEncoding(m_document.SaveEncoding());
    if (prompter().ShowModal(&importer) != QDialog::Accepted)
        return false;
    std::vector<korva::Entry> cards = importer.Cards();
    if (!importer.ParseError().isEmpty() || cards.empty()) {
        MsgBox(u"Can't Import"_s,
               importer.ParseError().isEmpty()
                       ? u"The file '%1' holds no cards."_s.arg(path)
                       : u"The file '%1' can't be read: %2."_s.arg(path, importer.ParseError()),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }
    if (m_document.CardCount() + qsizetype(cards.size()) > korva::kMaxEntries) {
        MsgBox(u"Can't Import"_s,
               u"With these %1 cards the chapter would have %2, more than the %3 a chapter holds."_s
                       .arg(cards.size())
                       .arg(m_document.CardCount() + qsizetype(cards.size()))
                       .arg(korva::kMaxEntries),
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }
    const int at = m_document.CardCount();
    const int count = int(cards.size());
    m_undo->push(new InsertCardsCommand(m_model, at, std::move(cards),
                                        u"Import %1 cards from %2"_s.arg(count).arg(
                                                QFileInfo(path).fileName())));
    m_table->setCurrentIndex(m_model->index(at, 0));
    const int problems = m_model->ProblemCount();
    statusBar()->showMessage(
            problems == 0 ? u"%1 cards imported."_s.arg(count)
                          : u"%1 cards imported; %2 cards need attention (F8 goes to the next)."_s
                                    .arg(count)
                                    .arg(problems),
            8000);
    return true;
}

void EditorWindow::ExportCards()
{
    const auto chosen =
            GCommonDialog::AskSave(u"Export Cards"_s,
                                   u"Tab-separated text|*.tsv|Comma-separated values|*.csv"_s,
                                   u"tsv"_s, {}, u"list"_s);
    if (!chosen)
        return;
    const QString path = *chosen;
    auto refuse = [](const QString &text) {
        MsgBox(u"Cards Not Exported"_s, text, MsgIcon::Exclamation, MsgButtons::OK);
    };
    if (!m_document.Path().isEmpty() && korva::sameFile(path, m_document.Path()))
        return refuse(u"The file '%1' is the chapter you are editing; export the cards to "
                      "another file. Nothing was written."_s.arg(path));
    QByteArray bytes;
    QString error;
    int bad = 0;
    if (!cardtext::FormatCards(m_document.Cards().data(), m_document.CardCount(),
                               cardtext::FormatForPath(path), bytes, &bad, &error))
        return refuse(u"Card %1: %2. Nothing was written."_s.arg(bad).arg(error));
    if (!korva::saveFile(path, bytes, &error))
        return refuse(u"The file '%1' couldn't be written: %2."_s.arg(path, error));
    statusBar()->showMessage(u"%1 cards exported."_s.arg(m_document.CardCount()), 5000);
}

QStringList EditorWindow::RecentFiles() const
{
    return QSettings().value(u"recentFiles"_s).toStringList();
}

void EditorWindow::AddRecentFile(const QString &path)
{
    QStringList recent = RecentFiles();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    recent.removeAll(absolute);
    recent.prepend(absolute);
    while (recent.size() > kMaxRecent)
        recent.removeLast();
    QSettings().setValue(u"recentFiles"_s, recent);
}

void EditorWindow::FillRecentMenu()
{
    m_recent->clear();
    const QStringList recent = RecentFiles();
    for (const QString &path : recent) {
        QAction *a = m_recent->addAction(QFileInfo(path).fileName(), this, [this, path] {
            if (MaybeSave())
                OpenFile(path);
        });
        a->setToolTip(path);
        a->setEnabled(QFileInfo::exists(path));
    }
    if (recent.isEmpty())
        m_recent->addAction(u"(none yet)"_s)->setEnabled(false);
}

void EditorWindow::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.first().isLocalFile())
        event->acceptProposedAction();
}

void EditorWindow::dropEvent(QDropEvent *event)
{
    const QString path = event->mimeData()->urls().value(0).toLocalFile();
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    if (!path.endsWith(u".zel"_s, Qt::CaseInsensitive))
        ImportFile(path);
    else if (MaybeSave())
        OpenFile(path);
}
