// A file that appears under its name only when it is complete.
#ifndef LUMOFE_TOOLS_OUTPUT_FILE_H
#define LUMOFE_TOOLS_OUTPUT_FILE_H

#include "TemporaryFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace lumofe {

// Bytes go to a temporary file beside the target, which commit() renames: see TemporaryFile. Pipes
// and devices are written directly.
class OutputFile {
public:
    // path "-": the descriptor standardOutput, of which the object keeps a copy. Throws Error when
    // the file cannot be created.
    OutputFile(const std::string& path, int standardOutput);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const std::uint8_t* bytes, std::size_t count);
    void write(std::string_view text);

    // Hands out what is still buffered, so that the reader of a pipe sees whole frames.
    void flush();

    // Writes what is buffered, closes and renames. Throws Error when the disk is full.
    void commit();

private:
    [[noreturn]] void fail(const char* what) const;

    std::string name_;                       // for messages
    std::optional<TemporaryFile> temporary_; // none: written directly
    std::FILE* file_ = nullptr;
};

} // namespace lumofe

#endif
