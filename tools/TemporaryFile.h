// A file that is written under another name beside its target and takes the target's place at last.
#ifndef LUMOFE_TOOLS_TEMPORARY_FILE_H
#define LUMOFE_TOOLS_TEMPORARY_FILE_H

#include <string>

namespace lumofe {

// Throws Error when a file of that name exists; with `force`, it may be replaced. Standard output
// ("-"), addresses, pipes and devices are never in the way.
void checkAbsent(const std::string& path, bool force);

// Whether the path is that of a pipe or device, which is written as it is.
bool isSpecialFile(const std::string& path);

// Creates an empty file beside the target, with the target's extension. Without commit(), and when
// SIGINT, SIGTERM or SIGHUP ends the process, it is removed and an older file stays. At most eight
// at a time.
class TemporaryFile {
public:
    // Throws Error when the file cannot be created.
    explicit TemporaryFile(const std::string& target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return path_; }

    // Renames it to the target; a link stays a link. Throws Error when that fails.
    void commit();

private:
    std::string name_; // of the target, for messages
    std::string target_;
    std::string path_; // empty after commit()
};

} // namespace lumofe

#endif
