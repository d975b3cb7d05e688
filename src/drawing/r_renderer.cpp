// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/r_renderer.h"

#include "core/log.h"
#include "core/programstate.h"
#include "core/rounding.h"
#include "drawing/colourcontrast.h"
#include "drawing/windowsurface.h"
#include "settings/r_data.h"

#include <QFontMetrics>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

QPointer<r_renderer> g_mainRenderer;

QString hex(quintptr value)
{
    return QString::number(value, 16).toUpper();
}

struct CornerStyle
{
    r_data::Corner corner;
    const char16_t *shadowKey;
    const char16_t *foreKey;
    int format;
};

// Drawn in this order: top-left, bottom-left, top-right, bottom-right.
constexpr CornerStyle kCorners[] = {
        {r_data::Corner::TopLeft, u"tl_text_shadow", u"tl_text_forecolor", 32},
        {r_data::Corner::BottomLeft, u"bl_text_shadow", u"bl_text_forecolor", 40},
        {r_data::Corner::TopRight, u"tr_text_shadow", u"tr_text_forecolor", 34},
        {r_data::Corner::BottomRight, u"br_text_shadow", u"br_text_forecolor", 42},
};

constexpr quint32 kDefaultBackA = 0;
constexpr quint32 kDefaultBackB = 14570825;
constexpr quint32 kDefaultMainShadow = 0xFF8080; // differs from the seeded colour on purpose
constexpr quint32 kWhite = 0xFFFFFF;
constexpr int kMainTextFormat = 37; // centre, vertical centre, single line
constexpr int kNoteFormat = 33;     // centre, top, single line

} // namespace

r_renderer *MainRenderer()
{
    return g_mainRenderer;
}

void SetMainRenderer(r_renderer *renderer)
{
    g_mainRenderer = renderer;
}

r_renderer::r_renderer(QObject *parent) : QObject(parent) {}

r_renderer::~r_renderer()
{
    forgetWindow();
}

void r_renderer::forgetWindow()
{
    if (m_windowDC && HasWindow())
        m_windowDC->ClearChangeWatcher(this);
}

void r_renderer::Initialize(QObject *window, WindowSurface *windowDC, r_data *metrics,
                            float refreshRate, int widthTrim, int heightTrim, qint32 reserved)
{
    Q_UNUSED(reserved);
    Log(u"initializing renderer/n"_s);
    m_window = window;
    m_hasWindow = window != nullptr;
    m_windowDC = windowDC;
    if (windowDC)
        windowDC->SetChangeWatcher(this, [this] { Wake(); });
    m_metrics = metrics;
    m_widthTrim = widthTrim;
    m_heightTrim = heightTrim;
    m_client = windowDC ? QRect(QPoint(0, 0), windowDC->size()) : QRect();

    m_surface = std::make_unique<cMemDC>();
    int width = m_client.width(), height = m_client.height();
    m_surface->Create(width, height, windowDC);
    m_refreshRate = refreshRate;

    const int right = m_client.left() + m_client.width();
    const int bottom = m_client.top() + m_client.height();
    Log(u" .. using DC @ 0x"_s + hex(windowDC ? windowDC->handle() : 0) + u"/n"_s);
    Log(u" .. using window @ 0x"_s + hex(reinterpret_cast<quintptr>(window)) + u"/n"_s);
    Log(u" .. using window size of ( %1 , %2 )/n"_s.arg(right).arg(bottom));
    Log(u" .. using modded window size of ( %1 , %2 )/n"_s.arg(right - widthTrim)
                .arg(bottom - heightTrim));
    Log(u" .. using r_data class @ "_s + hex(reinterpret_cast<quintptr>(metrics)) + u"/n"_s);
    Log(u" .. set refresh rate to "_s + QString::number(double(refreshRate)) + u" msec/n"_s);
    Log(u" .. using ZEL DC drawing class @ "_s + hex(reinterpret_cast<quintptr>(m_surface.get()))
        + u"/n"_s);
    Log(u"renderer initialized ok/n"_s);
}

void r_renderer::Draw(bool withMainText)
{
    if (!m_surface || !m_metrics || !HasWindow())
        return;
    cMemDC &dc = *m_surface;
    int L = m_client.left(), T = m_client.top();
    int Rt = m_client.left() + m_client.width(), B = m_client.top() + m_client.height();

    const QString mainText = m_metrics->MainText();
    if (mainText.isEmpty())
        return;          // nothing painted, nothing presented
    m_presented.reset(); // a new frame to show
    Wake();

    dc.FillRect(L, B, Rt, B, 0); // an empty rectangle, kept as it always was
    B -= m_heightTrim;
    Rt -= m_widthTrim;

    const quint32 a = m_metrics->Color(u"backcolor_a"_s, kDefaultBackA);
    const quint32 b = m_metrics->Color(u"backcolor_b"_s, kDefaultBackB);
    // Half of the right edge, not the midpoint of L and Rt; with L = 0 the same.
    const int M = int(RoundHalfEven(Rt / 2.0));
    dc.Gradient(L, B, M, B + 1, b, a); // the separator runs opposite to the body
    dc.Gradient(M, B, Rt, B + 1, a, b);
    dc.Gradient(L, T, M, B, a, b);
    dc.Gradient(M, T, Rt, B, b, a);

    L += 2;
    Rt -= 2;
    const QRect text(L, T, Rt - L, B - T);
    const QRect shadow = text.translated(-1, -1); // up and to the left, by design

    LogicalFont font = dc.Font();
    font.name = u"Tahoma"_s;
    if (withMainText) {
        font.bold = true;
        FitFontSize(mainText, text, font);
        dc.SetFont(font);
        int l = shadow.left(), t = shadow.top(), r = shadow.left() + shadow.width(),
            bt = shadow.top() + shadow.height();
        dc.SetForeColor(m_metrics->Color(u"main_text_shadow"_s, kDefaultMainShadow));
        dc.DrawText(mainText, l, t, r, bt, kMainTextFormat);
        l = text.left(), t = text.top(), r = text.left() + text.width(),
        bt = text.top() + text.height();
        dc.SetForeColor(m_metrics->Color(u"main_text_forecolor"_s, kWhite));
        if (m_metrics->MainMarking() == r_data::Marking::None)
            dc.DrawText(mainText, l, t, r, bt, kMainTextFormat);
        else
            DrawMarkedText(mainText, text);
        if (const QString note = m_metrics->NoteText(); !note.isEmpty())
            DrawNote(note, text, shadow, font);
    }

    // The bold setting is not undone for the corners.
    font.size = 8;
    dc.SetFont(font);
    for (int i = 0; i < 4; ++i)
        DrawCorner(i, text, shadow);

    if (withMainText) {
        Present();
    } else {
        dc.Blit(m_windowDC, 0, 0, 0, 0, 0, 0, cMemDC::SRCCOPY);
        rememberPresented(PresentMode {false, 255}, true);
    }
}

void r_renderer::DrawCorner(int index, const QRect &text, const QRect &shadow)
{
    const CornerStyle &style = kCorners[index];
    if (!m_metrics->CornerShown(style.corner))
        return;
    cMemDC &dc = *m_surface;
    const QString caption = m_metrics->CornerText(style.corner);
    for (const auto &[rect, key, fallback] : {std::tuple {shadow, style.shadowKey, quint32(0)},
                                              std::tuple {text, style.foreKey, kWhite}}) {
        int l = rect.left(), t = rect.top(), r = rect.left() + rect.width(),
            b = rect.top() + rect.height();
        dc.SetForeColor(m_metrics->Color(QString::fromUtf16(key), fallback));
        dc.DrawText(caption, l, t, r, b, style.format);
    }
}

void r_renderer::DrawMarkedText(const QString &mainText, const QRect &text)
{
    // Laid out as the plain text is, drawn in runs of marked and unmarked
    // letters, each clipped to its own stretch of the line; marked letters
    // in their colour and, unless all of the text is right, underlined.
    cMemDC &dc = *m_surface;
    const bool allRight = m_metrics->MainMarking() == r_data::Marking::Right;
    const quint32 fore = m_metrics->Color(u"main_text_forecolor"_s, kWhite);
    const quint32 mark = MarkColour(allRight, m_metrics->Color(u"backcolor_b"_s, kDefaultBackB));
    QList<bool> marked = m_metrics->MarkedLetters();
    if (allRight || marked.size() != mainText.size())
        marked = QList<bool>(mainText.size(), allRight);
    const int start = text.left() + (text.width() - dc.TextWidth(mainText)) / 2;
    const int underline = text.top() + (text.height() + dc.TextHeight(QString())) / 2 - 2;
    const qsizetype n = mainText.size();
    for (qsizetype begin = 0, end = 0; begin < n; begin = end) {
        while (end < n && marked[end] == marked[begin])
            ++end;
        const int from = start + dc.TextWidth(mainText.left(begin));
        const int to = start + dc.TextWidth(mainText.left(end));
        const int clipLeft = begin == 0 ? text.left() : from;
        const int clipRight = end == n ? text.left() + text.width() : to;
        dc.SetClip(QRect(clipLeft, text.top(), clipRight - clipLeft, text.height()));
        dc.SetForeColor(marked[begin] ? mark : fore);
        int l = text.left(), t = text.top(), r = text.left() + text.width(),
            b = text.top() + text.height();
        dc.DrawText(mainText, l, t, r, b, kMainTextFormat);
        if (marked[begin] && !allRight)
            dc.Line(from, underline, to, underline, mark, 2);
    }
    dc.SetClip(QRect());
}

quint32 r_renderer::MarkColour(bool right, quint32 background)
{
    const quint32 light = right ? 0x40E040 : 0x00D7FF;
    const quint32 dark = right ? 0x006400 : 0x0000B0;
    return ContrastRatio(light, background) >= 3 ? light : dark;
}

void r_renderer::DrawNote(const QString &note, const QRect &text, const QRect &shadow,
                          LogicalFont font)
{
    // Under the line the main text is centred on, in the same face and
    // colours, smaller; one line, clipped at the card's text margins.
    cMemDC &dc = *m_surface;
    const int lineHeight = dc.TextHeight(QString());
    const int below = (text.height() + lineHeight) / 2;
    const int limit = NoteSizeLimit(int(font.size));
    FitFontSize(note, text, font, qMin(8, limit), limit);
    dc.SetFont(font);
    for (const auto &[rect, key, fallback] :
         {std::tuple {shadow, u"main_text_shadow", kDefaultMainShadow},
          std::tuple {text, u"main_text_forecolor", kWhite}}) {
        int l = rect.left(), t = rect.top() + below, r = rect.left() + rect.width(),
            b = rect.top() + rect.height();
        dc.SetForeColor(m_metrics->Color(QString::fromUtf16(key), fallback));
        dc.DrawText(note, l, t, r, b, kNoteFormat);
    }
}

int r_renderer::NoteSizeLimit(int mainSize)
{
    return qMax(6, mainSize * 2 / 3);
}

int r_renderer::FitFontSize(const QString &text, const QRect &target, LogicalFont &font,
                            int smallest, int largest)
{
    for (int s = smallest; s <= largest; ++s) {
        font.size = s;
        m_surface->SetFont(font);
        if (qint16(m_surface->TextWidth(text)) >= target.width()) {
            font.size = s - 1;
            return s - 1;
        }
    }
    return int(font.size);
}

int r_renderer::CornerTextWidth(const QString &text)
{
    LogicalFont font;
    font.name = u"Tahoma"_s;
    font.bold = true; // as the corners come after a main text
    font.size = 8;
    return QFontMetrics(font.toQFont()).horizontalAdvance(text);
}

void r_renderer::Present()
{
    if (!m_surface || !m_windowDC || !HasWindow())
        return;
    // Once the window shows all a presentation can show (the frame copied, or
    // blended until a blend changes no pixel), presenting it again would
    // change nothing, as long as nobody painted into the window and the alpha
    // options stay as they were.
    if (IsSettled())
        return;
    const PresentMode mode = currentMode();
    if (!mode.blend) {
        m_surface->Blit(m_windowDC, 0, 0, 0, 0, 0, 0, cMemDC::SRCCOPY);
        rememberPresented(mode, true);
        return;
    }
    const QImage before = m_windowDC->image(); // shared until the blend writes
    m_surface->AlphaBlit(m_windowDC, 0, 0, 0, 0, 0, 0, mode.level);
    rememberPresented(mode, m_windowDC->image() == before);
}

void r_renderer::rememberPresented(PresentMode mode, bool settled)
{
    if (m_windowDC)
        m_presented = Presented {mode, settled, m_windowDC->Revision()};
}

bool r_renderer::IsSettled() const
{
    return m_presented && m_presented->settled && m_presented->mode == currentMode() && m_windowDC
            && m_presented->windowRevision == m_windowDC->Revision();
}

r_renderer::PresentMode r_renderer::currentMode()
{
    return {modrender::AlphaEffects && g_OsAlpha, modrender::AlphaLevel};
}

void r_renderer::StartRefresh()
{
    if (g_SuppressRefresh)
        return;
    if (!m_refreshTimer) {
        m_refreshTimer = new QTimer(this);
        // Every tick presents the study window's renderer. Once a tick can
        // change nothing more, the timer rests until a new frame or a change
        // to the window's picture wakes it: an idle card costs nothing.
        connect(m_refreshTimer, &QTimer::timeout, this, [this] {
            r_renderer *main = MainRenderer();
            if (main)
                main->Present();
            if (!main || main->IsSettled())
                m_refreshTimer->stop();
        });
    }
    m_refreshing = true;
    m_refreshTimer->start(int(RoundHalfEven(double(m_refreshRate))));
}

void r_renderer::StopRefresh()
{
    m_refreshing = false;
    if (m_refreshTimer)
        m_refreshTimer->stop();
}

void r_renderer::Wake()
{
    if (m_refreshing && m_refreshTimer && !m_refreshTimer->isActive())
        m_refreshTimer->start();
}

bool r_renderer::IsRefreshing() const
{
    return m_refreshing;
}

bool r_renderer::IsResting() const
{
    return m_refreshing && !m_refreshTimer->isActive();
}

void r_renderer::Release(bool keepMetrics)
{
    Log(u"renderer going down/n"_s);
    StopRefresh();
    forgetWindow();
    if (!keepMetrics)
        m_metrics = nullptr;
    m_surface.reset();
    m_presented.reset();
    Log(u" .. renderer released ok/n"_s);
}
