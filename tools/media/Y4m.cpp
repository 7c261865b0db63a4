// Reader and writer of YUV4MPEG2 video.
#include "media/Y4m.h"

#include "Error.h"
#include "media/ImageFile.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace lumofe {
namespace {

constexpr std::size_t kMaxLine = 1024;
constexpr std::array<std::string_view, 4> kColourSpaces = {"420", "420jpeg", "420mpeg2",
                                                           "420paldv"};

int parseDimension(std::string_view digits, const std::string& name)
{
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || value <= 0)
        throw Error(name + ": the Y4M header has a bad width or height; make the video again");
    return value;
}

} // namespace

Y4mHeader parseY4mHeader(const std::string& line, const std::string& name)
{
    const std::string_view text(line);
    if (text.substr(0, kY4mMagic.size()) != kY4mMagic ||
        (text.size() > kY4mMagic.size() && text[kY4mMagic.size()] != ' '))
        throw Error(name + ": does not begin with a Y4M header; convert it with -f yuv4mpegpipe");

    Y4mHeader header;
    for (std::size_t begin = kY4mMagic.size(); begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin + 1), text.size());
        const std::string_view tag = text.substr(begin + 1, end - begin - 1);
        begin = end;
        if (tag.empty()) continue;
        const std::string_view value = tag.substr(1);
        if (tag[0] == 'W')
            header.size.width = parseDimension(value, name);
        else if (tag[0] == 'H')
            header.size.height = parseDimension(value, name);
        else if (tag[0] == 'C' && std::ranges::find(kColourSpaces, value) == kColourSpaces.end())
            throw Error(name + ": is " + std::string(tag) +
                        "; only 8-bit 4:2:0 is read, convert it with -pix_fmt yuv420p");
        else
            header.tags.append(" ").append(tag);
    }
    if (header.size.width == 0 || header.size.height == 0)
        throw Error(name + ": the Y4M header lacks the width or height; make the video again");
    checkInputSize(header.size, name);
    return header;
}

std::string tagValue(const std::string& tags, std::string_view name)
{
    const std::size_t at = tags.find(std::string(" ").append(name));
    if (at == std::string::npos) return {};
    const std::size_t begin = at + 1 + name.size();
    return tags.substr(begin, tags.find(' ', begin) - begin);
}

double frameRate(const std::string& tags)
{
    constexpr double kUsual = 25;
    const std::string rate = tagValue(tags, "F");
    const char* end = rate.data() + rate.size();
    int frames = 0, seconds = 0;
    const auto [colon, bad] = std::from_chars(rate.data(), end, frames);
    if (bad != std::errc() || colon == end || *colon != ':') return kUsual;
    const auto [rest, alsoBad] = std::from_chars(colon + 1, end, seconds);
    if (alsoBad != std::errc() || frames <= 0 || seconds <= 0) return kUsual;
    return double(frames) / seconds;
}

Y4mReader::Y4mReader(InputStream& input) : input_(input)
{
    if (!input_.readLine(line_, kMaxLine)) throw Error(input_.name() + ": is empty");
    header_ = parseY4mHeader(line_, input_.name());
}

bool Y4mReader::read(Frame420& frame)
{
    if (!input_.readLine(line_, kMaxLine)) return false;
    constexpr std::string_view kFrame = "FRAME";
    if (line_.compare(0, kFrame.size(), kFrame) != 0 ||
        (line_.size() > kFrame.size() && line_[kFrame.size()] != ' '))
        throw Error(input_.name() + ": a frame header is damaged; make the video again");
    if (input_.read(frame.bytes.data(), frame.bytes.size()) != frame.bytes.size())
        throw Error(input_.name() + ": ends in the middle of a frame; make the video again");
    return true;
}

Y4mWriter::Y4mWriter(OutputFile& output, const Y4mHeader& header) : output_(output)
{
    output_.write(std::string(kY4mMagic) + " W" + std::to_string(header.size.width) + " H" +
                  std::to_string(header.size.height) + header.tags + "\n");
}

void Y4mWriter::write(const Frame420& frame)
{
    output_.write("FRAME\n");
    output_.write(frame.bytes.data(), frame.bytes.size());
}

} // namespace lumofe
