#include "core/modfolders.h"
#include "core/programstate.h"
#include "core/qtplatform.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QtPrompter prompter;
    SetPrompter(&prompter);
    ResetProgramState();
    modFolders::SetHomeDirectory();
    return 0;
}
