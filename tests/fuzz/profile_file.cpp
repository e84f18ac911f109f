// Files in the form of WIN.INI, whatever their bytes: which value a key finds.
// Parameters: section, key.
#include "mailgw/profile_file.h"

#include <algorithm>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

std::string Trim(std::string text) {
    const std::string blanks = " \t\r\n";
    text.erase(0, std::min(text.find_first_not_of(blanks), text.size()));
    text.erase(text.find_last_not_of(blanks) + 1);
    return text;
}

std::string Unquoted(const std::string& text) {
    if (text.size() < 2 || text.front() != text.back() || (text.front() != '"' && text.front() != '\'')) return text;
    return text.substr(1, text.size() - 2);
}

std::string Expected(std::string_view text, const std::string& section, const std::string& key) {
    bool isInside = false;
    bool wasInside = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        const std::string line = Trim(std::string(text.substr(0, end + 1)));
        text.remove_prefix(end + 1);
        const std::size_t separator = line.find('=');
        if (line.starts_with('[')) {
            const std::string name =
                Trim(line.substr(1, line.find(']') == std::string::npos ? line.npos : line.find(']') - 1));
            isInside = !wasInside && model::Compare(name, section) == 0;
            wasInside |= isInside;
        } else if (isInside && separator != std::string::npos &&
                   model::Compare(Trim(line.substr(0, separator)), key) == 0) {
            return Unquoted(Trim(line.substr(separator + 1))).substr(0, 268);
        }
    }
    return {};
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    if (input.Parameters.size() < 2) return;
    const std::string section(input.Parameters[0]);
    const std::string key(input.Parameters[1]);
    test::MemoryServer server;
    server.Load();
    server.Put("C:\\WINDOWS\\WIN.INI", input.Text);
    RequireEqual(ReadProfileText("WIN.INI", section, key), Expected(input.Text, section, key), "the value");
    Require(server.Front.TakeSaid().empty(), "nothing is said");
}

} // namespace bv::fuzz
