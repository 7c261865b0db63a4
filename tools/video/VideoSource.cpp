// Where the frames of a video come from.
#include "video/VideoSource.h"

namespace lumofe {

bool receive(VideoSource& source, std::uint8_t* frame)
{
    if (Transfer* transfer = source.request(frame)) {
        ChildProcess* program = source.program();
        TransferTimes times;
        carryOut({&transfer, 1}, {&program, std::size_t(program ? 1 : 0)}, -1, times);
    }
    return source.received();
}

} // namespace lumofe
