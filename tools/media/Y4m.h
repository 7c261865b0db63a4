// YUV4MPEG2 (Y4M) video: a text header, then uncompressed frames.
#ifndef LUMOFE_TOOLS_Y4M_H
#define LUMOFE_TOOLS_Y4M_H

#include "OutputFile.h"
#include "media/Image.h"
#include "media/InputStream.h"

#include <string>
#include <string_view>

namespace lumofe {

inline constexpr std::string_view kY4mMagic = "YUV4MPEG2";

struct Y4mHeader {
    Size size;
    // Everything but the size, as in the file: frame rate (F), interlacing (I), pixel aspect (A),
    // chroma position (C), remarks (X), each after a space.
    std::string tags;
};

// Reads the header line. Accepts 8-bit 4:2:0 of a size that the library takes; throws Error, with
// name for the file, for everything else.
Y4mHeader parseY4mHeader(const std::string& line, const std::string& name);

// Frames a second that a header's tags tell; 25 where they tell none.
double frameRate(const std::string& tags);

// What follows a tag's name: of " F25:1 Ip" and "F" it is "25:1". Empty when there is no such tag.
std::string tagValue(const std::string& tags, std::string_view name);

class Y4mReader {
public:
    // Reads the header; input must outlive the reader.
    explicit Y4mReader(InputStream& input);

    const Y4mHeader& header() const { return header_; }

    // Reads the next frame; its size must be that of the header. False at the end of the video.
    // Throws Error when the input ends inside a frame or something else follows.
    bool read(Frame420& frame);

private:
    InputStream& input_;
    Y4mHeader header_;
    std::string line_;
};

class Y4mWriter {
public:
    // Writes the header; output must outlive the writer.
    Y4mWriter(OutputFile& output, const Y4mHeader& header);

    void write(const Frame420& frame);

private:
    OutputFile& output_;
};

} // namespace lumofe

#endif
