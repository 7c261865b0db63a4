// The desktop viewer.
#include "ViewerCli.h"

int main(int argc, char** argv)
{
    return lumofe::viewer::runViewer(argc, argv);
}
