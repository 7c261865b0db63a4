// What the tests of the GStreamer element share.
#include "GstTestSupport.h"

#include "LumofeElement.h"

#include <algorithm>
#include <cstdlib>
#include <gst/video/navigation.h>
#include <gtest/gtest.h>

namespace lumofe::test {

void useGStreamer()
{
    static const bool done = [] {
        // No plugin of the machine, and no registry of the user's.
        setenv("GST_PLUGIN_SYSTEM_PATH", "", 1);
        setenv("GST_PLUGIN_PATH", "", 1);
        setenv("GST_REGISTRY", "/dev/null", 1);
        gst_init(nullptr, nullptr);
        return bool(gst_element_register(nullptr, "lumofe", GST_RANK_NONE, elementType()));
    }();
    ASSERT_TRUE(done);
}

std::string capsText(const std::string& format, Size size)
{
    return "video/x-raw, format=" + format + ", width=" + std::to_string(size.width) +
           ", height=" + std::to_string(size.height) + ", framerate=25/1";
}

GstVideoInfo infoOf(GstVideoFormat format, Size size, const std::string& colorimetry)
{
    useGStreamer();
    std::string text = capsText(gst_video_format_to_string(format), size);
    if (!colorimetry.empty()) text += ", colorimetry=" + colorimetry;
    GstCaps* caps = gst_caps_from_string(text.c_str());
    GstVideoInfo info;
    EXPECT_TRUE(gst_video_info_from_caps(&info, caps));
    gst_caps_unref(caps);
    return info;
}

Bytes converted(const Bytes& frame, const GstVideoInfo& from, const GstVideoInfo& to)
{
    Bytes result(GST_VIDEO_INFO_SIZE(&to));
    GstVideoConverter* converter = gst_video_converter_new(&from, &to, nullptr);
    GstBuffer* in = gst_buffer_new_memdup(frame.data(), frame.size());
    GstBuffer* out = gst_buffer_new_allocate(nullptr, result.size(), nullptr);
    GstVideoFrame source, target;
    EXPECT_TRUE(gst_video_frame_map(&source, &from, in, GST_MAP_READ));
    EXPECT_TRUE(gst_video_frame_map(&target, &to, out, GST_MAP_WRITE));
    gst_video_converter_frame(converter, &source, &target);
    gst_video_frame_unmap(&source);
    gst_video_frame_unmap(&target);
    gst_buffer_extract(out, 0, result.data(), result.size());
    gst_buffer_unref(in);
    gst_buffer_unref(out);
    gst_video_converter_free(converter);
    return result;
}

Bytes frameBytes(std::size_t bytes, int number)
{
    Bytes frame(bytes);
    for (std::size_t i = 0; i < bytes; ++i)
        frame[i] = std::uint8_t(i / 3 + i / 320 * 5 + std::size_t(number) * 17);
    return frame;
}

DewarperSetup setupOf(View view, Mount mount, PixelFormat format)
{
    DewarperSetup setup;
    setup.input = kInput;
    setup.output = defaultOutputSize(view, mount, kInput);
    setup.circle = {kInput.width / 2, kInput.height / 2, kInput.width / 2};
    setup.view = view;
    setup.mount = mount;
    setup.format = format;
    return setup;
}

std::string propertiesOf(View view, Mount mount)
{
    return std::string("layout=") + layoutRule(view).name + " mount=" + mountRule(mount).name;
}

std::vector<Aim> usualAims(View view, Mount mount)
{
    std::vector<Aim> aims;
    for (int number = 1; number <= layoutRule(view).views; ++number)
        aims.push_back(defaultAim(view, mount, number));
    return aims;
}

Bytes dewarped(Dewarper& dewarper, const Bytes& input)
{
    Bytes output(dewarper.outputBytes());
    dewarper.dewarp(input.data(), output.data());
    return output;
}

// The first frame of a camera.
Bytes dewarped(const DewarperSetup& setup, const std::vector<Aim>& aims, const Bytes& input)
{
    Dewarper dewarper(setup);
    dewarper.aim(aims);
    return dewarped(dewarper, input);
}

Bytes usual(View view, Mount mount, const Bytes& input, PixelFormat format)
{
    return dewarped(setupOf(view, mount, format), usualAims(view, mount), input);
}

std::string messageOn(GstBus* bus, GstMessageType type)
{
    GstMessage* message = gst_bus_pop_filtered(bus, type);
    if (!message) return {};
    GError* error = nullptr;
    if (type == GST_MESSAGE_ERROR)
        gst_message_parse_error(message, &error, nullptr);
    else
        gst_message_parse_warning(message, &error, nullptr);
    std::string text = error->message;
    g_error_free(error);
    gst_message_unref(message);
    return text;
}

Pipeline::Pipeline(const std::string& properties)
{
    useGStreamer();
    GstElement* element = gst_parse_launch(("lumofe " + properties).c_str(), nullptr);
    gst_object_ref_sink(element);
    harness_ = gst_harness_new_with_element(element, "sink", "src");
    gst_object_unref(element);
    bus_ = gst_bus_new();
    gst_element_set_bus(this->element(), bus_);
}

Pipeline::~Pipeline()
{
    gst_element_set_bus(element(), nullptr);
    gst_object_unref(bus_);
    gst_harness_teardown(harness_);
}

void Pipeline::input(const std::string& format, Size size)
{
    inputCaps(capsText(format, size));
}

void Pipeline::inputCaps(const std::string& caps)
{
    gst_harness_set_src_caps_str(harness_, caps.c_str());
}

void Pipeline::acceptOutput(const std::string& caps)
{
    gst_harness_set_sink_caps_str(harness_, caps.c_str());
}

double Pipeline::number(const char* property)
{
    GValue value = G_VALUE_INIT, number = G_VALUE_INIT;
    g_value_init(&number, G_TYPE_DOUBLE);
    g_object_get_property(G_OBJECT(element()), property, &value);
    if (G_VALUE_HOLDS_ENUM(&value)) return g_value_get_enum(&value);
    g_value_transform(&value, &number);
    return g_value_get_double(&number);
}

GstFlowReturn Pipeline::push(const Bytes& frame)
{
    GstBuffer* buffer = gst_buffer_new_memdup(frame.data(), frame.size());
    GST_BUFFER_PTS(buffer) = 0;
    return push(buffer);
}

GstFlowReturn Pipeline::push(GstBuffer* buffer)
{
    return gst_harness_push(harness_, buffer);
}

void Pipeline::stop()
{
    gst_element_set_state(element(), GST_STATE_READY);
}

void Pipeline::restart()
{
    gst_element_set_state(element(), GST_STATE_PLAYING);
    // The element has forgotten it.
    gst_pad_push_event(harness_->srcpad, gst_event_new_stream_start("again"));
}

Bytes Pipeline::pull()
{
    GstBuffer* buffer = gst_harness_try_pull(harness_);
    if (!buffer) return {};
    Bytes bytes(gst_buffer_get_size(buffer));
    gst_buffer_extract(buffer, 0, bytes.data(), bytes.size());
    gst_buffer_unref(buffer);
    return bytes;
}

Bytes Pipeline::dewarp(const Bytes& frame)
{
    EXPECT_EQ(push(frame), GST_FLOW_OK);
    return pull();
}

GstVideoInfo Pipeline::outputInfo()
{
    GstVideoInfo info;
    gst_video_info_init(&info);
    GstCaps* caps = gst_pad_get_current_caps(harness_->sinkpad);
    EXPECT_NE(caps, nullptr);
    if (!caps) return info;
    gst_video_info_from_caps(&info, caps);
    gst_caps_unref(caps);
    return info;
}

std::string Pipeline::outputFormat()
{
    const GstVideoInfo info = outputInfo();
    return gst_video_format_to_string(GST_VIDEO_INFO_FORMAT(&info));
}

Size Pipeline::outputSize()
{
    const GstVideoInfo info = outputInfo();
    return {GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info)};
}

std::string Pipeline::message(GstMessageType type)
{
    return messageOn(bus_, type);
}

void Pipeline::press(int button, double x, double y)
{
    navigate(
        gst_navigation_event_new_mouse_button_press(button, x, y, GST_NAVIGATION_MODIFIER_NONE));
}

void Pipeline::release(int button, double x, double y)
{
    navigate(
        gst_navigation_event_new_mouse_button_release(button, x, y, GST_NAVIGATION_MODIFIER_NONE));
}

void Pipeline::moveTo(double x, double y)
{
    navigate(gst_navigation_event_new_mouse_move(x, y, GST_NAVIGATION_MODIFIER_NONE));
}

void Pipeline::scroll(double x, double y, double notches)
{
    navigate(gst_navigation_event_new_mouse_scroll(x, y, 0, notches, GST_NAVIGATION_MODIFIER_NONE));
}

void Pipeline::navigate(GstEvent* event)
{
    gst_harness_push_upstream_event(harness_, event);
}

bool Pipeline::sentUpstream(GstEventType type)
{
    bool sent = false;
    while (GstEvent* event = gst_harness_try_pull_upstream_event(harness_)) {
        sent = sent || GST_EVENT_TYPE(event) == type;
        gst_event_unref(event);
    }
    return sent;
}

} // namespace lumofe::test
