// MAILUSER.DAT, whatever its bytes: which line a name finds.
// Parameters: display name.
#include "mailgw/mail_directory.h"

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

// The address on the line, if the name is at its front.
std::optional<std::string> AddressOn(const std::string& line, const std::string& name) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos || !model::Begins(line, name)) return {};
    return line.substr(tab + 1);
}

std::optional<std::string> Expected(std::string_view text, const std::string& name) {
    const std::size_t blank = name.find(' ');
    while (!name.empty() && !text.empty()) {
        const std::size_t end = text.find('\n');
        std::string line(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        while (line.ends_with('\r')) line.pop_back();
        if (auto address = AddressOn(line, name)) return address;
        if (blank == std::string::npos) continue;
        if (auto address = AddressOn(line, name.substr(blank + 1) + " " + name.substr(0, blank))) return address;
    }
    return {};
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string name(input.Parameters[0]);
    if (name.find('\r') != std::string::npos) return; // no name has a line end
    test::MemoryServer server;
    server.Load();
    server.Put("F:\\BRIVANE\\B-DB\\MAILUSER.DAT", input.Text);
    const std::optional<std::string> expected = Expected(input.Text, name);
    Require(LookupMailUser(name, std::string::npos) == expected, "the address");
    const std::optional<std::string> cut = LookupMailUser(name, 3);
    Require(cut.has_value() == expected.has_value(), "the cut address");
    if (cut) RequireEqual(*cut, std::string_view(*expected).substr(0, 3), "the cut address");
    Require(server.Front.TakeSaid().empty(), "nothing is said");
}

} // namespace bv::fuzz
