// SPDX-License-Identifier: GPL-3.0-or-later
// The floor of the start-up figures: a bare Qt Widgets window in a program
// that links Qt Widgets and nothing else, built like the program. Once the
// window has painted it says "painted" on its standard output, as the
// benchmark's start-up of the program does, and ends.
//
// With --text the window shows one line in a label: what the first text
// costs any program (the font configuration read, the font database filled,
// a face loaded), which a window without text never pays.
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QWidget>

#include <cstdio>

namespace {

class FirstPaint : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    FirstPaint paint;
    QWidget window;
    window.resize(600, 420);
    if (argc > 1 && QByteArray(argv[1]) == "--text")
        (new QLabel(QStringLiteral("Vocabrix"), &window))->move(20, 20);
    window.installEventFilter(&paint);
    window.show();
    while (!paint.painted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    std::fputs("painted\n", stdout);
    std::fflush(stdout);
    return 0;
}
