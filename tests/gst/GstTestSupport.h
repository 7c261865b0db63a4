// What the tests of the GStreamer element share: caps, buffers, and a pipeline around the element.
#ifndef LUMOFE_TESTS_GST_TEST_SUPPORT_H
#define LUMOFE_TESTS_GST_TEST_SUPPORT_H

#include "Dewarper.h"

#include <cstdint>
#include <gst/check/gstharness.h>
#include <gst/video/video.h>
#include <optional>
#include <string>
#include <vector>

namespace lumofe::test {

using Bytes = std::vector<std::uint8_t>;

// Makes the element known to GStreamer, without any other plugin. Does so once.
void useGStreamer();

inline constexpr Size kInput{320, 320};
inline constexpr std::size_t kInputBytes = std::size_t(kInput.width * kInput.height) * 3 / 2;
inline constexpr Mount kMounts[] = {Mount::ceiling, Mount::wall, Mount::floor};

// "video/x-raw" of that format and size.
std::string capsText(const std::string& format, Size size);

// Of capsText() with a colorimetry such as "bt709"; empty: the usual one of the size.
GstVideoInfo infoOf(GstVideoFormat format, Size size, const std::string& colorimetry = {});

// Pixels of one frame, as GStreamer converts them, byte by byte as they lie in a buffer.
Bytes converted(const Bytes& frame, const GstVideoInfo& from, const GstVideoInfo& to);

// Smooth, with other values in each row and column; the same for the same number.
Bytes frameBytes(std::size_t bytes, int number = 0);

// Text of the next error or warning on the bus; empty when there is none.
std::string messageOn(GstBus* bus, GstMessageType type);

// A frame that comes out of the library, of a new camera for set-ups, with the layout's usual aims
// or others.
Bytes dewarped(Dewarper& dewarper, const Bytes& input);
Bytes dewarped(const DewarperSetup& setup, const std::vector<Aim>& aims, const Bytes& input);
Bytes usual(View view, Mount mount, const Bytes& input, PixelFormat format = PixelFormat::nv12);

std::vector<Aim> usualAims(View view, Mount mount);

// "layout=... mount=..."
std::string propertiesOf(View view, Mount mount);

// A set-up as the element makes it for an input of kInput.
DewarperSetup setupOf(View view, Mount mount, PixelFormat format);

// An element between a source and a sink of the test.
class Pipeline {
public:
    // `properties` as in "layout=quad pan1=30". Without output caps all are accepted.
    explicit Pipeline(const std::string& properties = {});
    ~Pipeline();
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;

    GstHarness* harness() { return harness_; }
    GstElement* element() { return harness_->element; }

    // From now on.
    void input(const std::string& format, Size size = kInput);
    void inputCaps(const std::string& caps);
    void acceptOutput(const std::string& caps);

    template <class Value>
    void set(const char* property, Value value)
    {
        g_object_set(element(), property, value, nullptr);
    }
    double number(const char* property);

    GstFlowReturn push(const Bytes& frame);
    GstFlowReturn push(GstBuffer* buffer); // takes the reference

    void stop();
    void restart(); // caps must follow

    // The next frame that came out, as it lies in the buffer.
    Bytes pull();
    // push() and pull(); none when the push fails.
    Bytes dewarp(const Bytes& frame);

    // Format and size of the output.
    std::string outputFormat();
    Size outputSize();
    GstVideoInfo outputInfo();

    // What the element told: the text of the first error or warning that was not asked for yet.
    std::string message(GstMessageType type);

    // What a sink sends for the mouse, at output pixels.
    void press(int button, double x, double y);
    void release(int button, double x, double y);
    void moveTo(double x, double y);
    void scroll(double x, double y, double notches);

    // Whether such an event was sent upstream; forgets all that were.
    bool sentUpstream(GstEventType type);

private:
    void navigate(GstEvent* event);

    GstHarness* harness_;
    GstBus* bus_;
};

} // namespace lumofe::test

#endif
