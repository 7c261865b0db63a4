#include "Capture.h"

#include <stdexcept>
#include <unistd.h>

StdoutCapture::StdoutCapture() : file_(std::tmpfile()), saved_(-1)
{
    if (!file_) throw std::runtime_error("no temporary file");
    std::fflush(stdout);
    saved_ = dup(1);
    dup2(fileno(file_), 1);
}

StdoutCapture::~StdoutCapture()
{
    restore();
    std::fclose(file_);
}

void StdoutCapture::restore()
{
    if (saved_ < 0) return;
    std::fflush(stdout);
    dup2(saved_, 1);
    close(saved_);
    saved_ = -1;
}

std::string StdoutCapture::text()
{
    restore();
    std::rewind(file_);
    std::string text;
    char chunk[4096];
    while (const std::size_t n = std::fread(chunk, 1, sizeof chunk, file_))
        text.append(chunk, n);
    return text;
}

std::string maskTicks(const std::string& text)
{
    const std::string label = "Tick ";
    std::string masked;
    for (std::size_t i = 0; i < text.size();) {
        if (text.compare(i, label.size(), label) != 0) {
            masked += text[i++];
            continue;
        }
        masked += label + "N";
        i = text.find_first_not_of("0123456789", i + label.size());
    }
    return masked;
}

int occurrences(const std::string& text, const std::string& needle)
{
    int count = 0;
    for (std::size_t at = text.find(needle); at != std::string::npos;
         at = text.find(needle, at + needle.size()))
        ++count;
    return count;
}
