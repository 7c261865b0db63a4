// Sequential input from a file or standard input.
#ifndef LUMOFE_TOOLS_INPUT_STREAM_H
#define LUMOFE_TOOLS_INPUT_STREAM_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lumofe {

class InputStream {
public:
    // path "-": standard input. Throws Error when the file cannot be opened.
    explicit InputStream(const std::string& path);

    // The path, or "standard input": for messages.
    const std::string& name() const { return name_; }

    // Whether the bytes not yet read begin with text; reads none of them.
    bool startsWith(std::string_view text);

    // Reads up to count bytes; fewer only at the end of the input.
    std::size_t read(std::uint8_t* dst, std::size_t count);

    // Reads one line without its line feed. False at the end of the input. Throws Error for a line
    // of more than maxLength characters or without a line feed.
    bool readLine(std::string& line, std::size_t maxLength);

    // Reads the rest. Throws Error when that is more than maxBytes.
    std::vector<std::uint8_t> readAll(std::size_t maxBytes);

private:
    struct Closer {
        void operator()(std::FILE* file) const;
    };

    void fill(std::size_t count);
    std::size_t readFile(std::uint8_t* dst, std::size_t count);

    std::string name_;
    std::unique_ptr<std::FILE, Closer> file_;
    std::vector<std::uint8_t> ahead_; // read from the file, not yet handed out
};

} // namespace lumofe

#endif
