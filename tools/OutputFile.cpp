// A file that appears under its name only when it is complete.
#include "OutputFile.h"

#include "Error.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace lumofe {

OutputFile::OutputFile(const std::string& path, int standardOutput)
    : name_(path == "-" ? "standard output" : path)
{
    if (path == "-") {
        const int copy = dup(standardOutput);
        file_ = copy < 0 ? nullptr : fdopen(copy, "wb");
    } else {
        if (!isSpecialFile(path)) temporary_.emplace(path);
        file_ = std::fopen(temporary_ ? temporary_->path().c_str() : path.c_str(), "wb");
    }
    if (!file_) fail("cannot be written");
}

OutputFile::~OutputFile()
{
    if (file_) std::fclose(file_);
}

void OutputFile::fail(const char* what) const
{
    throw Error(name_ + ": " + what + " (" + std::strerror(errno) +
                "); check the path and the free space");
}

void OutputFile::write(const std::uint8_t* bytes, std::size_t count)
{
    if (std::fwrite(bytes, 1, count, file_) != count) fail("cannot be written");
}

void OutputFile::write(std::string_view text)
{
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail("cannot be written");
}

void OutputFile::flush()
{
    if (std::fflush(file_) != 0) fail("cannot be written");
}

void OutputFile::commit()
{
    if (std::fclose(std::exchange(file_, nullptr)) != 0) fail("cannot be written");
    if (temporary_) temporary_->commit();
}

} // namespace lumofe
