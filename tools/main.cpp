// The command line tool.
#include "Cli.h"

int main(int argc, char** argv)
{
    return lumofe::runTool(argc, argv);
}
