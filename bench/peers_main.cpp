// Times the same work done with OpenCV on request: see Worker.h. With --version, says which OpenCV.
#include "PeerCases.h"
#include "Worker.h"

#include <cstring>
#include <iostream>
#include <opencv2/core.hpp>

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::cout << cv::getVersionString() << '\n';
        return 0;
    }
    cv::setNumThreads(1);
    return bench::serve(bench::peerCases());
}
