#include "commandline.h"
#include "korvahooks.h"

#include <QCoreApplication>
#include <QFile>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // The engine asks before it overwrites a read-only file; nobody can answer
    // on the command line, so the answer is no and the verb says so.
    korva::setHooks({});
    QFile out, err;
    out.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
    err.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
    return commandline::Run(app.arguments().mid(1), out, err);
}
