// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmoptions.h"

#include "cards/deck.h"
#include "controls/zelcheck.h"
#include "core/extrasettings.h"
#include "core/gcommondialog.h"
#include "core/log.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "drawing/r_renderer.h"
#include "settings/r_data.h"
#include "settings/studyoptions.h"
#include "windows/frmmain.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"
#include "windows/speechpage.h"
#include "windows/typedanswer.h"
#include "windows/windowplacement.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

// The card window's present timer rests while nothing can change; new alpha
// options may change what it shows.
void wakeCardWindow()
{
    if (r_renderer *main = MainRenderer())
        main->Wake();
}

QPointer<frmOptions> g_options;

QString colorName(quint32 ole)
{
    return QColor(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF)).name();
}

} // namespace

QString TroubleDefaultCaption(bool saved, bool current)
{
    if (saved == current)
        return u"Make cards trouble by default"_s;
    return u"Make cards trouble by default (latched: "_s + (saved ? u"True"_s : u"False"_s)
            + u")"_s;
}

void ReleaseCheckBox::mouseReleaseEvent(QMouseEvent *event)
{
    QCheckBox::mouseReleaseEvent(event);
    Q_EMIT Released();
}

void ReleaseCheckBox::keyReleaseEvent(QKeyEvent *event)
{
    const bool before = isChecked();
    QCheckBox::keyReleaseEvent(event);
    if (isChecked() != before)
        Q_EMIT Released();
}

PreviewPanel::PreviewPanel(QWidget *parent) : QWidget(parent), m_surface(this, Qt::black)
{
    setFixedSize(300, 190);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_surface.Resize(size());
}

void PreviewPanel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_surface.PaintOn(painter, event->rect());
}

frmOptions *frmOptions::Instance()
{
    if (!g_options)
        g_options = new frmOptions;
    return g_options;
}

frmOptions *frmOptions::Existing()
{
    return g_options;
}

frmOptions::frmOptions()
    : QDialog(nullptr)
    , ts(new QTabBar(this))
    , Check1(new QCheckBox(u"&Fade new cards in (alpha effects)"_s))
    , Slider1(new QSlider(Qt::Horizontal))
    , Frame1(new QGroupBox(u"Alpha Effects"_s))
    , Check2(new QCheckBox(u"Show mouse &hover descriptions"_s))
    , Check3(new ReleaseCheckBox)
    , Check4(new QCheckBox(u"&Reset all settings when Vocabrix exits"_s))
    , LV(new QListWidget)
    , Command3(new QPushButton(u"C&olour..."_s))
    , Command4(new QPushButton(u"&Defaults"_s))
    , Command1(new QPushButton(u"&Apply"_s, this))
    , Command2(new QPushButton(u"&Close"_s, this))
    , Timer1(new QTimer(this))
    , Picture2(new PreviewPanel)
{
    setObjectName(u"frmOptions"_s);
    setWindowTitle(u"Vocabrix Options"_s);

    ts->setObjectName(u"ts"_s);
    ts->addTab(u"Colors"_s);
    ts->addTab(u"User Interface"_s);
    ts->addTab(u"Study"_s);
    ts->addTab(u"Speech"_s);
    ts->setExpanding(false);

    // The colours page: names, swatch and defaults beside the preview.
    Picture1[0] = new QWidget(this);
    auto *colors = new QHBoxLayout(Picture1[0]);
    auto *names = new QVBoxLayout;
    LV->setObjectName(u"LV"_s);
    LV->setMinimumWidth(190);
    names->addWidget(LV, 1);
    auto *swatchRow = new QHBoxLayout;
    Command3->setEnabled(false);
    Command3->setMinimumWidth(90);
    swatchRow->addWidget(Command3);
    swatchRow->addWidget(Command4);
    names->addLayout(swatchRow);
    colors->addLayout(names);
    auto *previewColumn = new QVBoxLayout;
    previewColumn->addWidget(new QLabel(u"Preview"_s));
    previewColumn->addWidget(Picture2);
    previewColumn->addStretch();
    colors->addLayout(previewColumn);

    // The user-interface page.
    Picture1[1] = new QWidget(this);
    auto *ui = new QVBoxLayout(Picture1[1]);
    ui->addWidget(Check1);
    Slider1->setRange(0, 255);
    Slider1->setPageStep(16);
    auto *alpha = new QVBoxLayout(Frame1);
    Label1[0] = new QLabel(u"Slow fade"_s);
    Label1[1] = new QLabel;
    Label1[2] = new QLabel(u"Fast fade"_s);
    Label1[1]->setAlignment(Qt::AlignCenter);
    alpha->addWidget(Slider1);
    auto *labels = new QHBoxLayout;
    labels->addWidget(Label1[0]);
    labels->addWidget(Label1[1], 1);
    labels->addWidget(Label1[2]);
    alpha->addLayout(labels);
    ui->addWidget(Frame1);
    ui->addSpacing(6);
    ui->addWidget(Check2);
    ui->addWidget(Check3);
    ui->addWidget(Check4);
    ui->addStretch();

    PictureSpeech = new SpeechPage(this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ts);
    layout->addWidget(Picture1[0]);
    layout->addWidget(Picture1[1]);
    Picture1[2] = BuildStudyPage();
    layout->addWidget(Picture1[2]);
    layout->addWidget(PictureSpeech);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command2);
    buttons->addWidget(Command1);
    layout->addLayout(buttons);
    Command1->setDefault(true);
    Command2->setAutoDefault(false);
    // Tab in reading order: the tabs, each page's controls as they were laid
    // out, Close, Apply.
    QList<QWidget *> order {ts, LV, Command3, Command4, Check1, Slider1, Check2, Check3, Check4};
    for (QWidget *page : {Picture1[2], static_cast<QWidget *>(PictureSpeech)})
        for (QWidget *control : page->findChildren<QWidget *>())
            if (control->focusPolicy() & Qt::TabFocus)
                order << control;
    order << Command2 << Command1;
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    SelectTab(0);

    // Only a change of tab turns the page: a click beside the tabs changes nothing.
    connect(ts, &QTabBar::currentChanged, this, &frmOptions::SelectTab);
    connect(Check1, &QCheckBox::clicked, this, [this] {
        modrender::AlphaEffects = Check1->isChecked();
        EnableAlphaControls(Check1->isChecked());
        wakeCardWindow();
    });
    connect(Slider1, &QSlider::valueChanged, this, [this](int value) {
        modrender::AlphaLevel = quint8(value);
        Label1[1]->setText(u"Level %1 of 255"_s.arg(value));
        wakeCardWindow();
    });
    connect(Check2, &QCheckBox::clicked, this, [this] { g_ShowMouseHover = Check2->isChecked(); });
    connect(Check3, &ReleaseCheckBox::Released, this, &frmOptions::TroubleDefaultReleased);
    connect(Check4, &QCheckBox::clicked, this, [this] {
        if (Check4->isChecked())
            MsgBox(u"Preferences"_s,
                   u"You will lose all custom settings if you continue with this option. If you "
                   "are "
                   "unsure, uncheck the box before closing the Preferences dialog."_s,
                   MsgIcon::Information, MsgButtons::OK);
    });
    connect(LV, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) {
        if (!item || !m_preview)
            return;
        SetSwatch(m_preview->Color(SelectedKey(), 0));
        Command3->setEnabled(true);
    });
    connect(Command3, &QPushButton::clicked, this, &frmOptions::PickColor);
    connect(Command4, &QPushButton::clicked, this, &frmOptions::RestoreDefaults);
    connect(Command1, &QPushButton::clicked, this, &frmOptions::Apply);
    connect(Command2, &QPushButton::clicked, this, [this] { forms::Unload(this); });
    connect(Timer1, &QTimer::timeout, this, [this] {
        if (m_loaded && m_renderer) {
            m_renderer->Draw(true);
            m_renderer->Present();
        }
    });
    forms::Add(this);

    // Loading, in order.
    Slider1->setValue(modrender::AlphaLevel);
    Label1[1]->setText(u"Level %1 of 255"_s.arg(modrender::AlphaLevel));
    Check1->setChecked(modrender::AlphaEffects);
    EnableAlphaControls(modrender::AlphaEffects);
    Check2->setChecked(g_ShowMouseHover);
    Check3->setChecked(g_TroubleDefaultCurrent);
    Check3->setText(TroubleDefaultCaption(g_TroubleByDefault, g_TroubleDefaultCurrent));
    adjustSize();
    modMain::RestoreWindowPosition(this);
    PauseWithEvents(10, true);

    m_preview = std::make_unique<r_data>();
    m_preview->LoadColors();
    m_preview->SetMainText(u"maintext"_s);
    m_preview->SetCornerText(r_data::Corner::TopLeft, u"tltext"_s);
    m_preview->SetCornerText(r_data::Corner::TopRight, u"trtext"_s);
    m_preview->SetCornerText(r_data::Corner::BottomLeft, u"bltext"_s);
    m_preview->SetCornerText(r_data::Corner::BottomRight, u"brtext"_s);
    m_renderer = std::make_unique<r_renderer>();
    m_renderer->Initialize(Picture2, Picture2->Surface(), m_preview.get(), 50.0f, 0, 0, 0);
    Log(u" .. frmOptions renderer loaded/n"_s);

    LV->clear();
    for (size_t i = 1; i < m_preview->Colors().size(); ++i)
        LV->addItem(QString(m_preview->Colors()[i].name).replace(u'_', u' '));
    m_loaded = true;
    RedrawPreview();
    Timer1->start(100);
}

frmOptions::~frmOptions() = default;

void frmOptions::SelectTab(int tab)
{
    // The pages in the order of their tabs.
    QWidget *const pages[] = {Picture1[0], Picture1[1], Picture1[2], PictureSpeech};
    for (int i = 0; i < int(std::size(pages)); ++i)
        pages[i]->setVisible(i == tab);
}

QWidget *frmOptions::BuildStudyPage()
{
    auto *page = new QWidget(this);
    Check5 = new QCheckBox(u"&Keep the session when Vocabrix ends"_s);
    Check5->setToolTip(u"When Vocabrix ends from the study window, the deck, the card on show, its "
                       "side and the trouble-only box are kept; the chapter window offers them "
                       "again with Resume Last Session"_s);
    Frame2 = new QGroupBox(u"Show first"_s);
    Option1[0] = new QRadioButton(u"The &question"_s);
    Option1[0]->setToolTip(u"Every card shows its question first, the answer when flipped"_s);
    Option1[1] = new QRadioButton(u"The a&nswer"_s);
    Option1[1]->setToolTip(u"Every card shows its answer first, the question when flipped"_s);
    Option1[2] = new QRadioButton(u"Either side, at random for &each card"_s);
    Option1[2]->setToolTip(u"Each card shown draws which of its sides comes first"_s);
    auto *sides = new QVBoxLayout(Frame2);
    for (QRadioButton *option : Option1)
        sides->addWidget(option);
    Check6 = new QCheckBox(u"Show the card's no&te under the answer"_s);
    Check6->setToolTip(u"The note written in the chapter editor, in smaller letters under the "
                       "answer"_s);
    Check7 = new QCheckBox(u"The arrows step &over the empty slot at the end of the deck"_s);
    Check7->setToolTip(u"Without it, the arrows stop once on the empty slot after the last card "
                       "(the card face then keeps the card shown before)"_s);
    Check8 = new QCheckBox(u"T&ype the answer before it is shown"_s);
    Check8->setToolTip(u"A line on the card for the side not on show; Return checks what you "
                       "typed, forgiving case, punctuation, a leading article and ae, oe, ue, ss "
                       "for umlauts. A wrong answer marks the card as a trouble card"_s);
    auto *column = new QVBoxLayout(page);
    column->addWidget(Check5);
    column->addWidget(Frame2);
    column->addWidget(Check6);
    column->addWidget(Check7);
    column->addWidget(Check8);
    column->addStretch();

    Check5->setChecked(studyoptions::KeepSession());
    Option1[int(studyoptions::First())]->setChecked(true);
    Check6->setChecked(studyoptions::ShowNotes());
    Check7->setChecked(studyoptions::SkipEmptySlot());
    Check8->setChecked(studyoptions::TypeAnswer());
    for (QCheckBox *box : {Check5, Check6, Check7, Check8})
        connect(box, &QCheckBox::toggled, this, &frmOptions::StudyOptionsChanged);
    for (QRadioButton *option : Option1)
        connect(option, &QRadioButton::toggled, this, [this](bool checked) {
            if (checked)
                StudyOptionsChanged();
        });
    return page;
}

void frmOptions::StudyOptionsChanged()
{
    studyoptions::SetKeepSession(Check5->isChecked());
    studyoptions::SetFirst(Option1[1]->isChecked()           ? studyoptions::FirstSide::Answer
                                   : Option1[2]->isChecked() ? studyoptions::FirstSide::Random
                                                             : studyoptions::FirstSide::Question);
    studyoptions::SetShowNotes(Check6->isChecked());
    studyoptions::SetSkipEmptySlot(Check7->isChecked());
    studyoptions::SetTypeAnswer(Check8->isChecked());
    // The side shown first applies from the next card; the note and the
    // typing line at once.
    modrender::RefreshNote();
    if (frmMain *main = frmMain::Existing())
        main->Typing->Refresh();
    if (!g_Extras.IsDirty())
        return;
    QString error;
    if (!g_Extras.Save(&error))
        MsgBox(u"Options Not Saved"_s,
               u"The study options couldn't be written to '"_s + ExtraSettings::Path() + u"': "_s
                       + error + u". They apply until Vocabrix ends."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
}

void frmOptions::EnableAlphaControls(bool enabled)
{
    const bool on = enabled && g_OsAlpha;
    Frame1->setEnabled(on);
    Slider1->setEnabled(on);
    for (QLabel *label : Label1)
        label->setEnabled(on);
}

void frmOptions::TroubleDefaultReleased()
{
    if (!m_loaded || g_ShuffleRunning) {
        Check3->setChecked(g_TroubleDefaultCurrent);
        return;
    }
    const bool wanted = Check3->isChecked();
    if (wanted == g_TroubleDefaultCurrent) {
        // Back to the value in force: the latch is undone without a question.
        g_TroubleByDefault = wanted;
        Check3->setText(TroubleDefaultCaption(g_TroubleByDefault, g_TroubleDefaultCurrent));
        return;
    }
    const MsgResult answer = MsgBox(u"Persistency"_s,
                                    u"You can enforce this change immediately or at the program's "
                                    "next run. If you enforce it "
                                    "immediately, then all cards' trouble status will be reset."_s,
                                    MsgIcon::Question, MsgButtons::YesNoCancel);
    if (answer == MsgResult::Yes) {
        g_TroubleDefaultCurrent = wanted;
        g_TroubleByDefault = wanted;
        for (Card &card : g_Deck.cards())
            card.trouble = wanted ? kCardTrue : kCardFalse;
        if (modrender::Metrics())
            modrender::ShowCurrentCard();
        modrender::ClearUndo(); // every mark changed: none of them is to be taken back
        Check3->setText(TroubleDefaultCaption(wanted, wanted));
        frmMain::Instance()->Check2->SetChecked(wanted);
    } else if (answer == MsgResult::No) {
        g_TroubleByDefault = wanted;
        Check3->setText(TroubleDefaultCaption(g_TroubleByDefault, g_TroubleDefaultCurrent));
        Check3->setChecked(g_TroubleDefaultCurrent);
    } else {
        Check3->setChecked(g_TroubleDefaultCurrent);
    }
}

QString frmOptions::SelectedKey() const
{
    const QListWidgetItem *item = LV->currentItem();
    return item ? QString(item->text()).replace(u' ', u'_') : QString();
}

void frmOptions::SetSwatch(quint32 color)
{
    m_swatch = color;
    Command3->setStyleSheet(u"QPushButton { background-color: %1; color: %2; }"_s.arg(
            colorName(color),
            qGray(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF)) > 128
                    ? u"black"_s
                    : u"white"_s));
}

void frmOptions::PickColor()
{
    if (!m_preview || SelectedKey().isEmpty())
        return;
    Command3->setEnabled(false);
    GCommonDialog dialog;
    dialog.SetColor(m_swatch);
    if (dialog.ShowColor()) {
        SetSwatch(dialog.Color());
        m_preview->SetColor(SelectedKey(), dialog.Color());
    }
    Command3->setEnabled(true);
    RedrawPreview();
}

void frmOptions::RestoreDefaults()
{
    if (!m_preview)
        return;
    m_preview->ColorDefaults();
    if (!SelectedKey().isEmpty())
        SetSwatch(m_preview->Color(SelectedKey(), 0));
    RedrawPreview();
}

void frmOptions::RedrawPreview()
{
    if (m_renderer)
        m_renderer->Draw(true);
}

void frmOptions::Apply()
{
    if (Check4->isChecked())
        modMain::RequestMasterReset();
    if (m_preview)
        m_preview->WriteColors();
    if (r_data *main = modrender::Metrics()) {
        main->ReadColors();
        if (r_renderer *renderer = modrender::Renderer()) {
            renderer->Draw(true);
            renderer->Present();
        }
        modrender::ApplySchemeToMainWindow();
    }
    forms::Unload(this);
}

void frmOptions::reject()
{
    forms::Unload(this); // Escape closes without applying
}

void frmOptions::OnUnload()
{
    Timer1->stop();
    Log(u" .. frmOptions renderer halted/n"_s);
    if (m_renderer)
        m_renderer->Release(false);
    m_renderer.reset();
    modMain::SaveWindowPosition(this, false);
}
