// Writes the manual page of the tool: write_man_page FILE
#include "Cli.h"
#include "Error.h"
#include "OutputFile.h"

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "write_man_page: takes one argument, the file to write\n");
        return 2;
    }
    try {
        lumofe::OutputFile output(argv[1], STDOUT_FILENO);
        output.write(lumofe::toolManPage());
        output.commit();
        return 0;
    } catch (const lumofe::Error& e) {
        std::fprintf(stderr, "write_man_page: %s\n", e.what());
        return 2;
    }
}
