// Catches what the library prints.
#pragma once

#include <cstdio>
#include <string>

// Redirects standard output into a temporary file from construction to text() or destruction.
class StdoutCapture {
public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    // Ends the capture and returns what was printed.
    std::string text();

private:
    void restore();

    std::FILE* file_;
    int saved_;
};

// What f prints on standard output.
template <class F>
std::string printedBy(F f)
{
    StdoutCapture capture;
    f();
    return capture.text();
}

// Replaces every number that follows "Tick " by N.
std::string maskTicks(const std::string& text);

// How often `needle` occurs.
int occurrences(const std::string& text, const std::string& needle);
