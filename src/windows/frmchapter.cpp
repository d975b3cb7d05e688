// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmchapter.h"

#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/sessionfile.h"
#include "controls/zelcheck.h"
#include "core/clstimer.h"
#include "core/gcommondialog.h"
#include "core/log.h"
#include "core/modfolders.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "drawing/paintedicon.h"
#include "korva/chapterformat.h"
#include "korva/ikorvalite.h"
#include "settings/settingskeys.h"
#include "settings/studyoptions.h"
#include "windows/frmabout.h"
#include "windows/frmmain.h"
#include "windows/frmprogress.h"
#include "windows/lifecycle.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"
#include "windows/typedanswer.h"
#include "windows/windowplacement.h"

#include <QAction>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPathRole = Qt::UserRole;

bool masterMounted()
{
    return g_MasterDb && g_MasterDb->IsMounted();
}

// A chapter's path is remembered in one record of the settings file; one
// that would not fit there could never be saved. A path that Windows-1252
// cannot hold turns the whole file into UTF-8, so every record is checked
// as it would then be written.
bool pathFitsSettings(const QString &path, int position)
{
    korva::Entry e;
    e.key = settings::FileListName(position);
    e.isText = korva::kTrue;
    e.text = path;
    if (!masterMounted()) {
        const qsizetype size = korva::entryRecordSize(e, korva::Encoding::Utf8);
        return size >= 0 && size <= korva::kRecordLength;
    }
    std::vector<korva::Entry> entries = g_MasterDb->Entries();
    auto same = std::find_if(entries.begin(), entries.end(),
                             [&e](const korva::Entry &x) { return x.key == e.key; });
    if (same != entries.end())
        *same = e;
    else
        entries.push_back(e);
    QByteArray image;
    return korva::serializeFile(g_MasterDb->Header(), entries, image, nullptr);
}

} // namespace

frmChapter::frmChapter(QWidget *parent)
    : QDialog(parent)
    , Toolbar2(new QToolBar(this))
    , LV1(new QTreeWidget(this))
    , Command1(new QPushButton(u"&Study"_s, this))
    , Command2(new QPushButton(u"&Quit"_s, this))
    , Command5(new QPushButton(u"Chapter &Editor..."_s, this))
{
    setObjectName(u"frmChapter"_s);
    setWindowTitle(u"Vocabrix - Choose Chapters"_s);
    setModal(false);
    resize(600, 420);

    Toolbar2->setObjectName(u"Toolbar2"_s);
    Toolbar2->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    // Every button has a key, named in its tooltip, and takes the focus in
    // turn with Tab.
    const struct
    {
        const char16_t *key;
        const char16_t *caption;
        CommandIcon icon;
        const char16_t *tip;
        QKeySequence shortcut;
    } buttons[] = {
            {u"sall", u"Add Chapter...", CommandIcon::AddChapter, u"Add a chapter file to the list",
             QKeySequence(Qt::CTRL | Qt::Key_O)},
            {u"del", u"Remove", CommandIcon::RemoveChapter,
             u"Remove the selected chapters from the list (the files stay)",
             QKeySequence(Qt::Key_Delete)},
            {u"lsaved", u"Resume Progress...", CommandIcon::Resume,
             u"Continue from a saved progress file", QKeySequence(Qt::CTRL | Qt::Key_R)},
            {u"lsession", u"Resume Last Session", CommandIcon::ResumeSession,
             u"Continue the session studied last, where it was left",
             QKeySequence(Qt::CTRL | Qt::Key_L)},
            {u"about", u"About", CommandIcon::About, u"About Vocabrix", QKeySequence(Qt::Key_F1)},
    };
    // The buttons come in the focus chain in the order they are added.
    QWidget *lastButton = nullptr;
    for (const auto &b : buttons) {
        QAction *a = Toolbar2->addAction(CommandIconFor(b.icon), QString::fromUtf16(b.caption));
        const QString key = QString::fromUtf16(b.key);
        a->setObjectName(key);
        a->setShortcut(b.shortcut);
        a->setToolTip(QString::fromUtf16(b.tip) + u" ("_s
                      + b.shortcut.toString(QKeySequence::NativeText) + u')');
        connect(a, &QAction::triggered, this, [this, key] { ToolbarCommand(key); });
        lastButton = Toolbar2->widgetForAction(a);
        lastButton->setFocusPolicy(Qt::TabFocus);
    }

    LV1->setObjectName(u"LV1"_s);
    LV1->setColumnCount(3);
    LV1->setHeaderLabels({u"Chapter"_s, u"Cards"_s, u"File"_s});
    LV1->setRootIsDecorated(false);
    LV1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    LV1->setAlternatingRowColors(true);
    LV1->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    LV1->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    LV1->header()->setStretchLastSection(false);
    LV1->setColumnWidth(2, 170);
    connect(LV1, &QTreeWidget::itemDoubleClicked, this, [this] { LoadSelected(); });

    auto *hint =
            new QLabel(u"Select the chapters to study (Ctrl+A selects all), then press Study."_s,
                       this);
    hint->setForegroundRole(QPalette::PlaceholderText);
    Notice = new QLabel(this);
    Notice->setObjectName(u"Notice"_s);
    Notice->setWordWrap(true);
    Notice->setTextFormat(Qt::PlainText);
    Notice->hide();

    Command1->setObjectName(u"Command1"_s);
    Command2->setObjectName(u"Command2"_s);
    Command5->setObjectName(u"Command5"_s);
    Command1->setDefault(true);
    Command1->setAutoDefault(true);
    Command2->setAutoDefault(false);
    Command5->setAutoDefault(false);
    Command1->setMinimumWidth(110);
    connect(Command1, &QPushButton::clicked, this, &frmChapter::LoadSelected);
    connect(Command2, &QPushButton::clicked, this, &frmChapter::Quit);
    connect(Command5, &QPushButton::clicked, this, &frmChapter::StartEditor);

    auto *row = new QHBoxLayout;
    row->addWidget(Command5);
    row->addStretch();
    row->addWidget(Command2);
    row->addWidget(Command1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(Toolbar2);
    auto *body = new QVBoxLayout;
    body->setContentsMargins(12, 8, 12, 12);
    body->setSpacing(8);
    body->addWidget(hint);
    body->addWidget(LV1, 1);
    body->addWidget(Notice);
    body->addLayout(row);
    layout->addLayout(body);

    // Reading order: the toolbar, the list, then the buttons left to right.
    setTabOrder(lastButton, LV1);
    setTabOrder(LV1, Command5);
    setTabOrder(Command5, Command2);
    setTabOrder(Command2, Command1);
    modMain::RemoveCloseCommand(this);
    forms::Add(this);

    Log(u" .. loading chapter selection form/n"_s);
    const QString editor = modFolders::ProgramDirectory() + u'/' + ExecutableFileName(u"vxedit"_s);
    Log(QFileInfo(editor).isFile() ? u"db editor seems to be present./n"_s
                                   : u"db editor seems to not be present./n"_s);
    LoadFileList();
    Log(u" .. chapter selection form is loaded/n"_s);
    CheckLastSession();
}

void frmChapter::ShowForm()
{
    show();
    LV1->setFocus();
    // The first chapter starts selected, so Study right away studies something.
    if (LV1->topLevelItemCount() > 0 && LV1->selectedItems().isEmpty()) {
        LV1->setCurrentItem(LV1->topLevelItem(0));
        LV1->topLevelItem(0)->setSelected(true);
    }
}

QAction *frmChapter::action(const QString &key) const
{
    return Toolbar2->findChild<QAction *>(key);
}

void frmChapter::SetActionsEnabled(bool enabled)
{
    for (QWidget *w : {static_cast<QWidget *>(Command1), static_cast<QWidget *>(Command2),
                       static_cast<QWidget *>(Command5)})
        w->setEnabled(enabled);
    for (const QString &key : {u"sall"_s, u"del"_s, u"lsaved"_s, u"lsession"_s})
        action(key)->setEnabled(enabled);
}

QString frmChapter::ItemPath(const QTreeWidgetItem *item) const
{
    return item ? item->data(0, kPathRole).toString() : QString();
}

void frmChapter::AddItem(const QString &path, const QString &title, int count)
{
    const QString name = title.isEmpty() ? QFileInfo(path).fileName() : title;
    auto *item =
            new QTreeWidgetItem(LV1, {name, QString::number(count), QFileInfo(path).fileName()});
    item->setData(0, kPathRole, path);
    // A long title is cut short in its column; the tooltip has all of it.
    item->setToolTip(0, name + u'\n' + path);
    item->setToolTip(2, path);
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
}

void frmChapter::LoadFileList()
{
    if (!masterMounted()) {
        MsgBox(u"Vocabrix"_s,
               u"The file list couldn't be loaded because the DB master isn't loaded"_s);
        return;
    }
    const int n = g_MasterDb->GetNumber(settings::kFileListCount, 0).value;
    QStringList leftOut;
    for (int i = 1; i <= n && i <= korva::kMaxEntries; ++i) {
        const QString path = g_MasterDb->GetText(settings::FileListName(i)).value;
        // Files deleted since are left out (and so leave the list at the next
        // save); the window says so once, under the list.
        if (path.isEmpty())
            continue;
        if (!ikorvalite::FileExists(path)) {
            leftOut << u"'%1' (the file is gone)"_s.arg(path);
            continue;
        }
        ikorvalite chapter;
        if (chapter.Mount(path, false))
            AddItem(path, chapter.Title(), chapter.Count());
        else
            leftOut << u"'%1' (%2)"_s.arg(path,
                                          chapter.LastError().isEmpty() ? u"it can't be read"_s
                                                                        : chapter.LastError());
    }
    m_listNotice =
            leftOut.isEmpty() ? QString() : u"Left out of the list: "_s + leftOut.join(u"; "_s);
    UpdateNotice();
}

void frmChapter::UpdateNotice()
{
    QStringList lines;
    for (const QString &line : {m_listNotice, m_sessionNotice}) {
        if (!line.isEmpty())
            lines << line;
    }
    Notice->setText(lines.join(u'\n'));
    Notice->setToolTip(Notice->text());
    Notice->setVisible(!lines.isEmpty());
}

void frmChapter::CheckLastSession()
{
    bool intact = false;
    if (studyoptions::KeepSession() && sessionfile::Exists()) {
        std::vector<Card> cards;
        sessionfile::State state;
        QString why;
        intact = sessionfile::Read(cards, state, &why);
        if (!intact)
            SetSessionAside(why);
    }
    action(u"lsession"_s)->setVisible(intact);
    // Room for the offer beside the other buttons, none of them in an overflow.
    if (intact)
        resize(qMax(width(), Toolbar2->sizeHint().width()), height());
}

void frmChapter::SetSessionAside(const QString &why)
{
    // Once, and never again at the next start: the files go out of the way.
    m_sessionNotice = u"The last session couldn't be resumed: "_s + why
            + (sessionfile::SetAside() ? u"; its files were set aside as %1 and %2."_s.arg(
                       sessionfile::SetAsideDeckName(), sessionfile::SetAsideStateName())
                                       : u"; its files couldn't be moved aside."_s);
    action(u"lsession"_s)->setVisible(false);
    UpdateNotice();
}

void frmChapter::SaveFileList()
{
    if (!masterMounted()) {
        MsgBox(u"Vocabrix"_s,
               u"The file list couldn't be saved because the DB master isn't loaded"_s);
        return;
    }
    const int count = LV1->topLevelItemCount();
    for (int i = 1; i <= count; ++i)
        g_MasterDb->SetValue(settings::FileListName(i), ItemPath(LV1->topLevelItem(i - 1)), 0,
                             QString());
    g_MasterDb->SetValue(settings::kFileListCount, QString(), count, QString());
}

void frmChapter::AddChapterFile(const QString &given)
{
    QString path = given;
    if (path.isEmpty()) {
        const std::optional<QString> chosen =
                GCommonDialog::AskOpen(u"Select File"_s, u"Vocabrix Data File|*.zel"_s, u"zel"_s,
                                       u"chapter"_s);
        if (!chosen)
            return;
        path = *chosen;
    }

    ikorvalite chapter;
    // A file that is not there is not created by looking at it.
    if (!ikorvalite::FileExists(path) || !chapter.Mount(path, false)
        || chapter.Description() != korva::kChapterDescription) {
        MsgBox(u"DB Open Error"_s, u"This file invalid and cannot be opened in this mode"_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return;
    }
    for (int i = 0; i < LV1->topLevelItemCount(); ++i) {
        if (ItemPath(LV1->topLevelItem(i)) == path) {
            LV1->setCurrentItem(LV1->topLevelItem(i)); // and it alone selected
            return;
        }
    }
    if (!pathFitsSettings(path, LV1->topLevelItemCount() + 1)) {
        MsgBox(u"Chapter Not Added"_s,
               u"The chapter '"_s + path
                       + u"' can't be remembered: its path is too long for the settings file. "
                         "Move it to a folder with a shorter name and add it again."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return;
    }
    AddItem(path, chapter.Title(), chapter.Count());
    LV1->clearSelection();
    LV1->setCurrentItem(LV1->topLevelItem(LV1->topLevelItemCount() - 1)); // and selected
}

void frmChapter::RemoveSelected()
{
    qDeleteAll(LV1->selectedItems());
}

void frmChapter::LoadSelected()
{
    SaveFileList();
    if (masterMounted())
        g_MasterDb->Save();

    QList<QTreeWidgetItem *> chosen;
    for (int i = 0; i < LV1->topLevelItemCount(); ++i) {
        if (LV1->topLevelItem(i)->isSelected())
            chosen << LV1->topLevelItem(i);
    }

    bool failed = chosen.isEmpty();
    clsTimer timer;
    if (!failed) {
        frmMain::Ensure()->EnableStudyControls(false);
        timer.Start();
        auto *progress = new frmProgress(this);
        progress->SetCaption(u"Loading Chapters"_s);
        progress->SetRange(0, int(chosen.size()));
        progress->show();
        for (QTreeWidgetItem *item : chosen) {
            LoadChapterFile(ItemPath(item), item->text(0));
            progress->SetValue(progress->Value() + 1);
            DoEvents();
            if (g_ShuttingDown)
                return; // the study window was closed meanwhile: the program is ending
        }
        forms::Unload(progress);
    } else {
        MsgBox(u"FileLoader"_s, u"No files were selected to be loaded. The program will exit."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
    }
    if (failed) {
        MsgBox(u"Database Loader Failure"_s,
               u"The specified chapters couldn't be loaded. This may result from corrupted "
               "database "
               "files and you may need to reinstall the program if this error persists."_s,
               MsgIcon::None, MsgButtons::OK);
        lifecycle().DestroySystem(0, false, kExitFailure);
        return;
    }
    timer.Stop();
    Log(timer.strElapsed(u"All file(s) loaded in %t msec/n"_s));
    Log(u" .. loaded "_s + QString::number(g_Deck.UBound() - g_Deck.LBound()) + u" nodes/n"_s);
    StartStudying();
}

void frmChapter::StartStudying(const sessionfile::State *kept)
{
    frmMain *main = frmMain::Ensure();
    modrender::StartRendering();
    main->SetStudying(true);
    main->Typing->SetCounts(kept ? kept->typedRight : 0, kept ? kept->typedWrong : 0);
    if (kept) {
        main->Check2->SetChecked(kept->troubleOnly);
        modrender::ShowKeptCard(kept->card, kept->answerShown, kept->answerFirst);
    } else {
        modrender::ShowFirstCard();
    }
    main->EnableStudyControls(true);
    main->raise();
    main->activateWindow();
    forms::Unload(this);
}

void frmChapter::ResumeProgress(const QString &path)
{
    if (path.isEmpty()
                ? !modMain::LoadProgress()
                : (Log(u"Reading saved progress from file/n"_s), !modMain::LoadProgressFrom(path)))
        return;
    // The file keeps chapter names only: their languages come from the
    // chapters of the list that have those names.
    for (int i = 0; i < LV1->topLevelItemCount(); ++i)
        LoadChapterLanguages(ItemPath(LV1->topLevelItem(i)), LV1->topLevelItem(i)->text(0));
    Log(u" .. loaded "_s + QString::number(g_Deck.UBound() - g_Deck.LBound()) + u" nodes/n"_s);
    SaveFileList();
    if (masterMounted())
        g_MasterDb->Save();
    StartStudying();
}

void frmChapter::ResumeLastSession()
{
    if (!action(u"lsession"_s)->isVisible())
        return; // its key while nothing is offered
    std::vector<Card> cards;
    sessionfile::State state;
    QString why;
    if (!sessionfile::Read(cards, state, &why)) {
        SetSessionAside(why);
        return;
    }
    SaveFileList();
    if (masterMounted())
        g_MasterDb->Save();
    g_Deck.cards() = std::move(cards);
    Log(u" .. loaded "_s + QString::number(g_Deck.UBound() - g_Deck.LBound()) + u" nodes/n"_s);
    StartStudying(&state);
}

void frmChapter::Quit()
{
    SaveFileList();
    lifecycle().DestroySystem(0, false);
}

void frmChapter::StartEditor()
{
    if (MsgBox(u"Load Editor?"_s,
               u"This button will cause this program to close and load the database editor. Do you "
               "want to continue?"_s,
               MsgIcon::None, MsgButtons::YesNo)
        != MsgResult::Yes)
        return;
    const QString editor = modFolders::ProgramDirectory() + u'/' + ExecutableFileName(u"vxedit"_s);
    // The editor starts in the home folder, where its file dialogs then open.
    if (!QFileInfo(editor).isFile() || !prompter().StartProgram(editor, {}, g_BaseDirectory)) {
        MsgBox(u"Editor not Found"_s,
               u"The database editor couldn't be found. If you wish to use this tool, it is "
               "possible "
               "you may need to reinstall, ensuring the tool is selected for install."_s,
               MsgIcon::None, MsgButtons::OK);
        return;
    }
    Quit();
}

void frmChapter::OnUnload()
{
    modMain::SaveWindowPosition(this, false);
}

void frmChapter::ToolbarCommand(const QString &key)
{
    if (key == u"sall"_s)
        AddChapterFile();
    else if (key == u"del"_s)
        RemoveSelected();
    else if (key == u"lsaved"_s)
        ResumeProgress();
    else if (key == u"lsession"_s)
        ResumeLastSession();
    else if (key == u"about"_s)
        frmAbout::ShowAbout(this);
}
