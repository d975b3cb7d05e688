// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/widgetsurface.h"
#include "windows/forms.h"

#include <QCheckBox>
#include <QDialog>

#include <memory>

class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabBar;
class QTimer;
class r_data;
class r_renderer;
class SpeechPage;

// A check box that reports when a mouse button is let go after a press on it,
// wherever that happens and whether or not the box changed; and when the
// keyboard changed it.
class ReleaseCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

Q_SIGNALS:
    void Released();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
};

// The panel the colour preview is drawn in.
class PreviewPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewPanel(QWidget *parent = nullptr);
    WindowSurface *Surface() { return &m_surface; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WidgetSurface m_surface;
};

// The preferences: alpha (fade-in) effects, hover help, whether new cards
// start as trouble cards (now, or latched for the next run), resetting every
// setting at exit, and the card colours on a live preview. Only the colours
// are written by the dialog itself (Apply); the rest is saved at shutdown.
// The third page, "Study", holds the options of the study window's additions,
// saved in their own file as soon as they change.
class frmOptions : public QDialog, public forms::Unloadable
{
    Q_OBJECT

public:
    static frmOptions *Instance();
    static frmOptions *Existing();
    ~frmOptions() override;

    QTabBar *ts;
    QWidget *Picture1[3]; // the "Colors", "User Interface" and "Study" pages
    QCheckBox *Check1;    // alpha effects
    QSlider *Slider1;     // alpha level
    QGroupBox *Frame1;    // the alpha controls
    QLabel *Label1[3];
    QCheckBox *Check2;       // hover help
    ReleaseCheckBox *Check3; // trouble by default
    QCheckBox *Check4;       // reset everything at exit
    QListWidget *LV;         // the colour names
    QPushButton *Command3;   // the colour swatch
    QPushButton *Command4;   // defaults
    QPushButton *Command1;   // apply
    QPushButton *Command2;   // close
    QTimer *Timer1;          // redraws the preview
    PreviewPanel *Picture2;
    QCheckBox *Check5;         // keep the session for Resume Last Session
    QGroupBox *Frame2;         // the side shown first
    QRadioButton *Option1[3];  // question, answer, either at random
    QCheckBox *Check6;         // the note under the answer
    QCheckBox *Check7;         // the arrows step over the empty slot
    QCheckBox *Check8;         // type the answer
    SpeechPage *PictureSpeech; // the "Speech" page

    r_data *PreviewMetrics() const { return m_preview.get(); }
    r_renderer *PreviewRenderer() const { return m_renderer.get(); }
    quint32 SwatchColor() const { return m_swatch; }

    void SelectTab(int tab);
    void TroubleDefaultReleased();
    void PickColor();
    void RestoreDefaults();
    void Apply();
    void RedrawPreview();
    // Takes the Study page's choices and saves them.
    void StudyOptionsChanged();

    void OnUnload() override;

public Q_SLOTS:
    void reject() override;

private:
    frmOptions();
    void EnableAlphaControls(bool enabled);
    QWidget *BuildStudyPage();
    void SetSwatch(quint32 color);
    QString SelectedKey() const;

    std::unique_ptr<r_data> m_preview;
    std::unique_ptr<r_renderer> m_renderer;
    quint32 m_swatch = 0;
    bool m_loaded = false;
};

// "Make cards trouble by default", with "(latched: True)" or "(latched:
// False)" when the value saved for the next run differs from the one in force.
QString TroubleDefaultCaption(bool saved, bool current);
