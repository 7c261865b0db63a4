// Times the library's cases on request: see Worker.h.
#include "Worker.h"

int main()
{
    return bench::serve(bench::ourCases());
}
