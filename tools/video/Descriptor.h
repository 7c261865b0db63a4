// A file descriptor that closes itself.
#ifndef LUMOFE_TOOLS_DESCRIPTOR_H
#define LUMOFE_TOOLS_DESCRIPTOR_H

#include <unistd.h>
#include <utility>

namespace lumofe {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const { return number_; } // -1: none
    void close()
    {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

private:
    int number_ = -1;
};

} // namespace lumofe

#endif
