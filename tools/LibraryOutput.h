// Keeps the library's diagnostic lines away from the tool's own output.
#ifndef LUMOFE_TOOLS_LIBRARY_OUTPUT_H
#define LUMOFE_TOOLS_LIBRARY_OUTPUT_H

namespace lumofe {

// While an object lives, whatever is printed on standard output is dropped, or shown on standard
// error; ownOutput() is where standard output led before.
class LibraryOutput {
public:
    enum class Target { discard, standardError };

    explicit LibraryOutput(Target target);
    ~LibraryOutput();
    LibraryOutput(const LibraryOutput&) = delete;
    LibraryOutput& operator=(const LibraryOutput&) = delete;

    // A descriptor, or -1 when the process was started without standard output.
    int ownOutput() const { return own_; }

private:
    int own_ = -1;
};

} // namespace lumofe

#endif
