// Sequential input from a file or standard input.
#include "media/InputStream.h"

#include "Error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace lumofe {

void InputStream::Closer::operator()(std::FILE* file) const
{
    if (file != stdin) std::fclose(file);
}

InputStream::InputStream(const std::string& path)
    : name_(path == "-" ? "standard input" : path),
      file_(path == "-" ? stdin : std::fopen(path.c_str(), "rb"))
{
    if (!file_)
        throw Error(name_ + ": cannot be opened (" + std::strerror(errno) + "); check the path");
}

std::size_t InputStream::readFile(std::uint8_t* dst, std::size_t count)
{
    const std::size_t got = std::fread(dst, 1, count, file_.get());
    if (got < count && std::ferror(file_.get()))
        throw Error(name_ + ": cannot be read (" + std::strerror(errno) + ")");
    return got;
}

void InputStream::fill(std::size_t count)
{
    const std::size_t have = ahead_.size();
    if (have >= count) return;
    ahead_.resize(count);
    ahead_.resize(have + readFile(ahead_.data() + have, count - have));
}

bool InputStream::startsWith(std::string_view text)
{
    fill(text.size());
    return ahead_.size() >= text.size() &&
           std::equal(text.begin(), text.end(), ahead_.begin(),
                      [](char c, std::uint8_t byte) { return std::uint8_t(c) == byte; });
}

std::size_t InputStream::read(std::uint8_t* dst, std::size_t count)
{
    const std::size_t first = std::min(count, ahead_.size());
    std::copy_n(ahead_.begin(), first, dst);
    ahead_.erase(ahead_.begin(), ahead_.begin() + std::ptrdiff_t(first));
    return first + (first < count ? readFile(dst + first, count - first) : 0);
}

bool InputStream::readLine(std::string& line, std::size_t maxLength)
{
    line.clear();
    std::uint8_t byte = 0;
    while (read(&byte, 1) == 1) {
        if (byte == '\n') return true;
        if (line.size() == maxLength)
            throw Error(name_ + ": a header line is longer than " + std::to_string(maxLength) +
                        " characters; this is no Y4M video");
        line.push_back(char(byte));
    }
    if (!line.empty()) throw Error(name_ + ": ends inside a header line; make the video again");
    return false;
}

std::vector<std::uint8_t> InputStream::readAll(std::size_t maxBytes)
{
    std::vector<std::uint8_t> all = std::move(ahead_);
    ahead_.clear();
    std::vector<std::uint8_t> block(1 << 16);
    while (const std::size_t got = readFile(block.data(), block.size())) {
        all.insert(all.end(), block.begin(), block.begin() + std::ptrdiff_t(got));
        if (all.size() > maxBytes)
            throw Error(name_ + ": is larger than " + std::to_string(maxBytes >> 20) +
                        " MiB and no Y4M video; scale the picture first");
    }
    return all;
}

} // namespace lumofe
