// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/clstimer.h"

#include "core/log.h"
#include "core/programstate.h"
#include "core/rounding.h"

#include <QLocale>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 kFixedPointScale = 10000;

class MonotonicClock final : public TickSource
{
public:
    bool Frequency(qint64 &ticksPerSecond) override
    {
        ticksPerSecond = 1'000'000'000;
        return true;
    }
    bool Counter(qint64 &ticks) override
    {
        ticks = std::chrono::duration_cast<std::chrono::nanoseconds>(
                        std::chrono::steady_clock::now().time_since_epoch())
                        .count();
        return true;
    }
};

MonotonicClock g_monotonic;
TickSource *g_source = nullptr;

TickSource &source()
{
    return g_source ? *g_source : g_monotonic;
}

} // namespace

void SetTickSource(TickSource *s)
{
    g_source = s;
}

clsTimer::clsTimer()
{
    qint64 rate = 0;
    m_hasCounter = source().Frequency(rate);
    m_frequency = m_hasCounter ? rate * kFixedPointScale : 0;
}

bool clsTimer::Available() const
{
    return m_hasCounter && g_Watcher != nullptr;
}

qint32 clsTimer::Frequency() const
{
    return qint32(RoundHalfEven(double(m_frequency) / kFixedPointScale));
}

void clsTimer::Start()
{
    qint64 ticks = 0;
    m_lastCallOk = source().Counter(ticks);
    if (m_lastCallOk)
        m_startCount = ticks;
}

void clsTimer::Stop()
{
    qint64 ticks = 0;
    m_lastCallOk = source().Counter(ticks);
    if (m_lastCallOk)
        m_stopCount = ticks;
}

double clsTimer::ElapsedSeconds() const
{
    if (m_frequency == 0)
        return 0.0;
    // (stop - start) as a fixed-point number, over the frequency as one, times
    // the scale: raw ticks over the tick rate.
    const double delta = double(m_stopCount - m_startCount) / kFixedPointScale;
    const double frequency = double(m_frequency) / kFixedPointScale;
    return delta / frequency * kFixedPointScale;
}

double clsTimer::ElapsedMs() const
{
    return ElapsedSeconds() * 1000.0;
}

QString clsTimer::strElapsed(const QString &mask) const
{
    return Fill(mask, ElapsedSeconds());
}

QString clsTimer::strElapsedMs(const QString &mask) const
{
    return Fill(mask, ElapsedMs());
}

QString clsTimer::Fill(const QString &mask, double value) const
{
    if (!mask.contains(u"%t"_s))
        Log(u" .. warning: strElapsed couldn't find a '%t' in string mask/n"_s);

    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
    QString result = mask;
    result.replace(u"%t"_s, locale.toString(value, 'f', 7));
    return result;
}
