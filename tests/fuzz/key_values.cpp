// The values of keys, from many places of a text: the Get forms, which find the key anywhere in the paragraph, and the
// Read forms, which take the next line.
// Parameter: the key.
#include <cstdint>

#include "ctlfile/memory_disk.h"
#include "ctlfile/reader.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

constexpr std::size_t kPlaces = 8; // searched from

std::uint16_t Number(const std::string& value) {
    std::size_t at = value.find_first_not_of(' ');
    if (at == std::string::npos) return 0;
    const bool negative = value[at] == '-';
    if (negative || value[at] == '+') ++at;
    long number = 0;
    for (; at < value.size() && value[at] >= '0' && value[at] <= '9'; ++at)
        number = (number * 10 + value[at] - '0') % 65536;
    return static_cast<std::uint16_t>(negative ? -number : number);
}

std::optional<bool> Boolean(const std::string& value) {
    for (const char* word : {"", "y", "yes", "true", "on", "1"}) {
        if (model::Compare(value, word) == 0) return true;
    }
    for (const char* word : {"n", "no", "false", "off", "0"}) {
        if (model::Compare(value, word) == 0) return false;
    }
    return {};
}

// The operations of one form.
struct Form {
    bool NextLine;
    bool (*String)(ControlStream&, const std::string&, TextPlace);
    bool (*Number)(ControlStream&, const std::string&, std::uint16_t&);
    bool (*Bool)(ControlStream&, const std::string&, bool&);
};

const Form kForms[] = {
    {false, [](auto& stream, auto& key, TextPlace place) { return GetKeyString(stream, key, place); },
     [](auto& stream, auto& key, auto& place) { return GetKeyNumber(stream, key, place); },
     [](auto& stream, auto& key, bool& place) { return GetKeyBool(stream, key, place); }},
    {true, [](auto& stream, auto& key, TextPlace place) { return ReadKeyString(stream, key, place); },
     [](auto& stream, auto& key, auto& place) { return ReadKeyNumber(stream, key, place); },
     [](auto& stream, auto& key, bool& place) { return ReadKeyBool(stream, key, place); }},
};

void CheckValues(ControlStream& stream, std::string_view text, std::size_t at, const std::string& key,
                 const Form& form) {
    std::optional<model::Line> line = model::FindKeyLine(text, at, form.NextLine ? "" : key);
    if (line && !model::Begins(line->Text, key)) line.reset();
    const std::string value = line ? model::Value(line->Text) : "";
    const std::optional<bool> boolean = Boolean(value);
    const auto check = [&](bool succeeded, bool usable, const char* what) {
        Require(succeeded == (line && usable), what);
        const bool stepped = line && (usable || !form.NextLine);
        Require(stream.Tell() == (stepped ? line->Next : at), "position after a value");
        stream.Seek(at);
    };

    stream.Seek(at);
    FixedText<20> string("untouched");
    check(form.String(stream, key, string), true, "string");
    RequireEqual(string, line ? value.substr(0, 20) : "untouched", "string");

    std::uint16_t number = 7;
    check(form.Number(stream, key, number), !value.empty(), "number");
    Require(number == (value.empty() ? 7 : Number(value)), "number");

    for (const bool before : {false, true}) {
        bool flag = before;
        check(form.Bool(stream, key, flag), boolean.has_value(), "boolean");
        Require(flag == (line ? boolean.value_or(before) : before), "boolean");
    }
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string key = model::Clean(input.Parameters[0]);
    if (!model::IsSignificant(key) || model::IsParagraph(key)) return;

    const test::MemoryDisk disk;
    test::MemoryDisk::Put("A.CTL", input.Text);
    ControlStream stream = OpenShared("A.CTL", "rb");
    for (std::size_t at = 0; at <= input.Text.size(); at += input.Text.size() / kPlaces + 1) {
        for (const Form& form : kForms) CheckValues(stream, input.Text, at, key, form);
    }
    Require(stream.Close(), "the stream has failed");
}

} // namespace bv::fuzz
