// Strict reading of JSON files: every refusal names the file and the field.
#include "camera/JsonField.h"

#include "Error.h"
#include "media/InputStream.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <numeric>
#include <set>

namespace lumofe {
namespace {

constexpr int kDeepest = 16;
constexpr std::size_t kLargestFile = std::size_t(256) << 10;
constexpr std::size_t kMostMembers = 2000;
constexpr std::size_t kLongestQuote = 60;

// An object or array that is being read.
struct Level {
    bool array = false;
    std::size_t index = 0;
    std::string name; // of the member last begun
    std::set<std::string> names;
};

std::string pathOf(const std::vector<Level>& levels)
{
    std::string path;
    for (const Level& level : levels) {
        if (level.array)
            path += "[" + std::to_string(level.index) + "]";
        else
            path += (path.empty() ? "" : ".") + quotable(level.name);
    }
    return path;
}

// Refuses what the parser itself lets pass.
class Strictness {
public:
    explicit Strictness(const std::string& file) : file_(file) {}

    void see(int depth, Json::parse_event_t event, const Json& parsed)
    {
        using Event = Json::parse_event_t;
        if (event == Event::object_start || event == Event::array_start) {
            if (depth >= kDeepest) throw Error(file_ + ": is nested too deep for a camera's file");
            levels_.push_back({event == Event::array_start, 0, {}, {}});
            return;
        }
        if (event == Event::key) {
            takeName(parsed.get_ref<const std::string&>());
            return;
        }
        if (event != Event::value) levels_.pop_back();
        if (!levels_.empty() && levels_.back().array) ++levels_.back().index;
    }

private:
    void takeName(const std::string& name)
    {
        Level& level = levels_.back();
        level.name = name;
        if (!level.names.insert(name).second)
            throw Error(file_ + ": " + pathOf(levels_) + ": appears twice; remove one of them");
        if (level.names.size() > kMostMembers)
            throw Error(file_ + ": " + pathOf(levels_) + ": is one of more than " +
                        std::to_string(kMostMembers) + " fields; remove some");
    }

    const std::string& file_;
    std::vector<Level> levels_;
};

std::string lineAndColumn(std::string_view text, std::size_t byte)
{
    const std::string_view before = text.substr(0, byte > 0 ? byte - 1 : 0);
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    return "line " + std::to_string(std::ranges::count(before, '\n') + 1) + ", column " +
           std::to_string(before.size() - lineStart + 1);
}

// What the parser says after its own name and place.
std::string explanation(const std::string& message)
{
    const std::size_t colon = message.find(": ");
    return quotable(message.substr(colon == std::string::npos ? 0 : colon + 2));
}

std::string numberText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

// How many letters must be put in, left out or exchanged to make one of the other.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t(0));
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t kept = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({kept, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

Json parseJson(std::string_view text, const std::string& name)
{
    try {
        Strictness strictness(name);
        return Json::parse(text, [&](int depth, Json::parse_event_t event, Json& parsed) {
            strictness.see(depth, event, parsed);
            return true;
        });
    } catch (const Json::parse_error& e) {
        throw Error(name + ": " + lineAndColumn(text, e.byte) +
                    ": is not JSON: " + explanation(e.what()));
    } catch (const Json::exception& e) {
        throw Error(name + ": " + explanation(e.what()));
    }
}

JsonFile readJson(const std::string& path)
{
    InputStream input(path);
    std::string text(kLargestFile + 1, '\0');
    text.resize(input.read(reinterpret_cast<std::uint8_t*>(text.data()), text.size()));
    if (text.size() > kLargestFile)
        throw Error(input.name() + ": is larger than " + std::to_string(kLargestFile >> 10) +
                    " KiB; give the JSON file of a camera");
    return {input.name(), parseJson(text, input.name())};
}

std::string quotable(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        // Long text is cut between two characters of UTF-8.
        const auto byte = static_cast<unsigned char>(c);
        const bool begins = (byte & 0xc0) != 0x80;
        if (result.size() >= kLongestQuote && begins) return result + "...";
        result += byte < 0x20 || byte == 0x7f ? '?' : c;
        if (result.size() >= 2 * kLongestQuote) return result;
    }
    return result;
}

void JsonField::fail(const std::string& what) const
{
    throw Error(*file_ + ": " + (path_.empty() ? "" : path_ + ": ") + what);
}

void JsonField::expect(bool right, const char* type) const
{
    if (!right) fail(std::string("is ") + value_->type_name() + "; write " + type);
}

double JsonField::number(double low, double high, const char* unit) const
{
    expect(value_->is_number(), "a number");
    const double number = value_->get<double>();
    // Written so that a NaN fails.
    if (number >= low && number <= high) return number;
    fail(numberText(number) + " is outside " + numberText(low) + " to " + numberText(high) + unit);
}

int JsonField::integer(int low, int high, const char* unit) const
{
    const double value = number(low, high, unit);
    if (value != std::floor(value)) fail(numberText(value) + " is not whole; write no decimals");
    return int(value);
}

bool JsonField::boolean() const
{
    expect(value_->is_boolean(), "true or false");
    return value_->get<bool>();
}

const std::string& JsonField::text() const
{
    expect(value_->is_string(), "text in quotes");
    return value_->get_ref<const std::string&>();
}

JsonField JsonField::member(const std::string& name, const Json& value) const
{
    return {value, *file_, path_ + (path_.empty() ? "" : ".") + quotable(name)};
}

JsonField JsonField::at(const char* name) const
{
    if (const std::optional<JsonField> found = find(name)) return *found;
    member(name, *value_).fail("is missing");
}

std::optional<JsonField> JsonField::find(const char* name) const
{
    expect(value_->is_object(), "an object in braces");
    const auto found = value_->find(name);
    if (found == value_->end()) return std::nullopt;
    return member(name, *found);
}

std::vector<std::pair<std::string, JsonField>> JsonField::members() const
{
    expect(value_->is_object(), "an object in braces");
    std::vector<std::pair<std::string, JsonField>> all;
    for (const auto& [name, value] : value_->items())
        all.emplace_back(name, member(name, value));
    return all;
}

std::vector<JsonField> JsonField::items() const
{
    expect(value_->is_array(), "a list in brackets");
    std::vector<JsonField> all;
    for (const Json& value : *value_)
        all.push_back({value, *file_, path_ + "[" + std::to_string(all.size()) + "]"});
    return all;
}

void JsonField::allow(std::initializer_list<const char*> names) const
{
    for (const auto& [name, field] : members()) {
        if (std::ranges::find(names, std::string_view(name)) != names.end()) continue;
        std::string all;
        for (const char* known : names) {
            if (name.size() < kLongestQuote && distance(name, known) <= 2)
                field.fail(std::string("is unknown; did you mean ") + known + "?");
            all.append(all.empty() ? "" : ", ").append(known);
        }
        field.fail("is unknown; there can be " + all);
    }
}

} // namespace lumofe
