// Strict reading of JSON files: every refusal names the file and the field.
#ifndef LUMOFE_TOOLS_JSON_FIELD_H
#define LUMOFE_TOOLS_JSON_FIELD_H

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumofe {

using Json = nlohmann::ordered_json;

// The document of that text. Throws Error, with `name` for the file, for text that is not JSON, for
// a field that appears twice, and for one that is nested too deep or too large for any real file.
Json parseJson(std::string_view text, const std::string& name);

struct JsonFile {
    std::string name; // for messages
    Json document;
};

// "-": standard input. Throws Error as parseJson() does, and for a file that cannot be read.
JsonFile readJson(const std::string& path);

// Text of a file as a message may quote it: on one line, and not too long.
std::string quotable(std::string_view text);

// A value of a document and the way to it. The file must outlive it.
// Everything but find() and fail() throws Error when the file has something else there.
class JsonField {
public:
    explicit JsonField(const JsonFile& file) : value_(&file.document), file_(&file.name) {}

    // Throws Error: "file: way.to[1].field: what".
    [[noreturn]] void fail(const std::string& what) const;

    // `unit` follows the numbers of a message: " degrees".
    double number(double low, double high, const char* unit) const;
    int integer(int low, int high, const char* unit) const;
    bool boolean() const;
    const std::string& text() const;

    // The value of the name that the text is.
    template <class Value>
    Value choice(std::initializer_list<std::pair<const char*, Value>> choices) const
    {
        std::string names;
        for (const auto& [name, value] : choices) {
            if (text() == name) return value;
            names.append(names.empty() ? "" : ", ").append(name);
        }
        fail("'" + quotable(text()) + "' is unknown; choose one of " + names);
    }

    // Of an object: a member that must be there, one that may be, and all.
    JsonField at(const char* name) const;
    std::optional<JsonField> find(const char* name) const;
    std::vector<std::pair<std::string, JsonField>> members() const;

    // Of an array.
    std::vector<JsonField> items() const;

    // Throws Error, with a hint, when the object has a member of another name.
    void allow(std::initializer_list<const char*> names) const;

private:
    JsonField(const Json& value, const std::string& file, std::string path)
        : value_(&value), file_(&file), path_(std::move(path))
    {
    }

    JsonField member(const std::string& name, const Json& value) const;
    void expect(bool right, const char* type) const;

    const Json* value_;
    const std::string* file_;
    std::string path_; // empty: the document
};

} // namespace lumofe

#endif
