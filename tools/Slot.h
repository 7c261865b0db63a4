// One of the library's sixteen camera slots.
#ifndef LUMOFE_TOOLS_SLOT_H
#define LUMOFE_TOOLS_SLOT_H

namespace lumofe {

// Holds a slot that nobody else in this process holds through such an object, the lowest one. Slots
// may be taken and given back on any thread.
class Slot {
public:
    // Throws Error when all are taken.
    Slot();
    // Closes the slot and gives it back.
    ~Slot();
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    int number() const { return number_; }

    // Closes the camera that was initialised there, but keeps the slot.
    void close();

private:
    int number_;
};

} // namespace lumofe

#endif
