// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "windows/forms.h"

#include <QDialog>

class QAction;
class QLabel;
class QPushButton;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace sessionfile {
struct State;
}

// The chapter window, the first after start-up: the chapters used before,
// adding and removing chapter files, choosing which to study, resuming saved
// progress, and starting the chapter editor. Studying loads the chosen
// chapters and hands over to the study window.
class frmChapter : public QDialog, public forms::Unloadable
{
    Q_OBJECT

public:
    // Loading the window logs its steps and fills the list.
    explicit frmChapter(QWidget *parent = nullptr);

    QToolBar *Toolbar2;
    QTreeWidget *LV1;
    QLabel *Notice;        // remembered chapters that could not be listed, a kept session set aside
    QPushButton *Command1; // study the selected chapters
    QPushButton *Command2; // quit
    QPushButton *Command5; // the chapter editor

    void ShowForm();
    // The buttons that load chapters and start studying, off while the
    // system comes up.
    void SetActionsEnabled(bool enabled);

    void LoadFileList();
    void SaveFileList();
    // Adds a chapter file to the list and selects it: the one given, else one
    // the user picks.
    void AddChapterFile(const QString &path = {});
    void RemoveSelected();
    void LoadSelected();
    // Resumes from a progress file: the one given, else one the user picks.
    void ResumeProgress(const QString &path = {});
    // Studies the session kept when studying last ended, as it was left.
    void ResumeLastSession();
    // Offers the kept session while there is an intact one; a damaged one is
    // set aside with a line under the list.
    void CheckLastSession();
    void Quit();
    void StartEditor();
    // A toolbar button by its key: "sall", "del", "lsaved", "lsession", "about".
    void ToolbarCommand(const QString &key);

    QString ItemPath(const QTreeWidgetItem *item) const;

    // The window keeps its place for the next time.
    void OnUnload() override;

public Q_SLOTS:
    // Neither Escape nor the title bar closes it: Quit does.
    void reject() override {}

private:
    void AddItem(const QString &path, const QString &title, int count);
    // From the first card, or as a kept session left it.
    void StartStudying(const sessionfile::State *kept = nullptr);
    void SetSessionAside(const QString &why);
    void UpdateNotice();
    QAction *action(const QString &key) const;

    QString m_listNotice;
    QString m_sessionNotice;
};
