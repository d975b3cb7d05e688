// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// A high-resolution counter: ticks and ticks per second. The program's is a
// monotonic nanosecond clock; tests give their own.
class TickSource
{
public:
    virtual ~TickSource() = default;
    virtual bool Frequency(qint64 &ticksPerSecond) = 0;
    virtual bool Counter(qint64 &ticks) = 0;
};

// Installs a tick source (not owned) for timers created afterwards; nullptr
// goes back to the monotonic clock.
void SetTickSource(TickSource *source);

// Measures one interval for the log. Counts are kept as 64-bit fixed-point
// numbers with four implied decimals: the frequency is scaled so that its value
// is the tick rate, while the start and stop counts are stored raw. That is why
// strElapsed() gives seconds although every mask in the program says "msec";
// the output is kept exactly so.
//
// Without a counter (a frequency of 0) ElapsedMs() is 0 and strElapsed() fills
// in "0.0000000": a missing measurement reads as zero rather than failing.
class clsTimer
{
public:
    clsTimer();

    // Only while the external message watcher is connected.
    bool Available() const;
    qint32 Frequency() const;
    void Start();
    void Stop();
    double ElapsedMs() const;
    // Every "%t" in mask replaced by the elapsed seconds, "###,##0.0000000".
    QString strElapsed(const QString &mask) const;
    // The same with the true milliseconds.
    QString strElapsedMs(const QString &mask) const;

private:
    double ElapsedSeconds() const;
    QString Fill(const QString &mask, double value) const;

    qint64 m_frequency = 0; // fixed point: value x 10000
    qint64 m_startCount = 0;
    qint64 m_stopCount = 0;
    bool m_hasCounter = false;
    bool m_lastCallOk = false;
};
