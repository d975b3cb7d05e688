// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "drawing/cmemdc.h"

#include <QObject>
#include <QPointer>
#include <QRect>

#include <memory>
#include <optional>

class QTimer;
class WindowSurface;
class r_data;

// Paints card frames: a mirrored horizontal gradient, a one-pixel separator
// along the bottom of the card area, the main text centred in bold with a
// shadow, and four small corner texts with theirs. It paints into its own
// surface and copies that onto the window; a timer presents the surface again
// every refresh period, blending it in when alpha effects are on, so each new
// card fades in. Texts and colours come from the colour metrics.
class r_renderer : public QObject
{
    Q_OBJECT

public:
    explicit r_renderer(QObject *parent = nullptr);
    ~r_renderer() override;

    // Binds the renderer to a window and its picture and makes a surface of
    // the window's size (its picture's). The trims leave rows at the bottom
    // and columns at the right to the window's own controls; the last
    // argument is unused.
    void Initialize(QObject *window, WindowSurface *windowDC, r_data *metrics, float refreshRate,
                    int widthTrim, int heightTrim, qint32 reserved = 0);
    void Draw(bool withMainText);
    void DrawBackground() { Draw(false); }
    void Present();
    void StartRefresh();
    void StopRefresh();
    void Release(bool keepMetrics);

    // The main text's size in points: the largest from 8 to 17 whose width
    // stays below the rectangle's, and one less than the first that reaches it.
    // The note under it is fitted the same way between smaller sizes.
    int FitFontSize(const QString &text, const QRect &target, LogicalFont &font, int smallest = 8,
                    int largest = 17);
    // The largest size of the note under a main text of mainSize points.
    static int NoteSizeLimit(int mainSize);
    // How wide a corner text is drawn on a card with its main text.
    static int CornerTextWidth(const QString &text);
    // The colour of a main text marked right (a green), or of its marked
    // letters (a gold), darker where the card's centre colour is light.
    static quint32 MarkColour(bool right, quint32 background);

    cMemDC *Surface() const { return m_surface.get(); }
    // The window shows the frame as well as presenting can show it: further
    // presentations are skipped until something changes.
    bool IsSettled() const;
    // False once the window the renderer was bound to is gone: its picture
    // went with it, and nothing is drawn or presented any more.
    bool HasWindow() const { return !m_hasWindow || m_window; }
    QRect ClientRect() const { return m_client; }
    // Refreshing: started and not stopped. Resting: refreshing, yet the timer
    // sleeps because no tick could change anything.
    bool IsRefreshing() const;
    bool IsResting() const;
    // Something may have changed (a new frame, the window's picture, the
    // alpha options): a resting timer ticks again.
    void Wake();

private:
    struct PresentMode
    {
        bool blend = false;
        quint8 level = 255;
        bool operator==(const PresentMode &o) const { return blend == o.blend && level == o.level; }
    };
    struct Presented
    {
        PresentMode mode;
        bool settled = false;       // one more presentation would change no pixel
        quint64 windowRevision = 0; // the window's picture as the presentation left it
    };

    void DrawCorner(int corner, const QRect &text, const QRect &shadow);
    void DrawMarkedText(const QString &mainText, const QRect &text);
    void DrawNote(const QString &note, const QRect &text, const QRect &shadow, LogicalFont font);
    void rememberPresented(PresentMode mode, bool settled);
    void forgetWindow();
    static PresentMode currentMode();

    QPointer<QObject> m_window; // the window the surface belongs to, when one was given
    bool m_hasWindow = false;
    WindowSurface *m_windowDC = nullptr;
    QPointer<r_data> m_metrics;
    QRect m_client;
    float m_refreshRate = 0;
    std::unique_ptr<cMemDC> m_surface;
    int m_widthTrim = 0;
    int m_heightTrim = 0;
    QTimer *m_refreshTimer = nullptr;
    bool m_refreshing = false;
    std::optional<Presented> m_presented;
};

// The renderer of the study window, which every refresh tick presents.
r_renderer *MainRenderer();
void SetMainRenderer(r_renderer *renderer);
