// LINK.INI, whatever its bytes: saving the links that were read keeps them, with every line of a link that only the
// server knows and every paragraph that is no link.
#include "lcr/links.h"

#include <algorithm>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\Link.ini";

bool IsOwn(const std::string& line) {
    return std::ranges::any_of(LinkKeys(),
                               [&](const LinkKey& key) { return model::Begins(line, std::string(key.Field.Key)); });
}

// The lines that have to outlive a saving, sorted.
std::vector<std::string> LinesToKeep(std::string_view text) {
    std::vector<std::string> lines;
    for (auto at = model::FindParagraph(text, 0, ""); at;) {
        const bool isLink = model::Begins(at->Text, "[LINK]");
        bool isKept = !model::Begins(at->Text, "[BRIVANE]");
        while ((at = model::ReadLine(text, at->Next)) && !model::IsParagraph(at->Text)) {
            if (isLink && at->Text.empty()) isKept = false;
            if (isKept && !(isLink && IsOwn(at->Text))) lines.push_back(at->Text);
        }
    }
    std::ranges::sort(lines);
    return lines;
}

// Whether the lines that are written hold the link. A name with a quote in it may come to be its description as well,
// which cannot have one.
bool CanBeWritten(const LinkRecord& link) {
    if (link.Description.find('"') != std::string::npos) return false;
    const std::string text = LinkParagraph(link, "");
    for (auto line = model::ReadLine(text, 0); line; line = model::ReadLine(text, line->Next))
        if (line->Next - line->Start > 280) return false;
    return true;
}

// The links as they are read again: a priority that is none is not written, and a missing one is read as urgent.
LinkTable AsReadAgain(LinkTable links) {
    for (LinkRecord& link : links)
        for (std::uint16_t* priority : {&link.MaxOutboundPriority, &link.MaxInboundPriority})
            if (*priority == 0) *priority = kUrgentPriority;
    return links;
}

} // namespace

void TryInput(std::string_view bytes) {
    test::MemoryServer server;
    server.Load();
    server.Put(kPath, bytes);
    LinkTable links;
    TextStamp stamp;
    Require(LoadLinks(links, stamp), "LoadLinks");
    if (!std::ranges::all_of(links, CanBeWritten)) return;
    Require(SaveLinks(links, stamp), "SaveLinks");
    const std::string saved = server.Get(kPath);
    LinkTable again;
    Require(LoadLinks(again, stamp) && again == AsReadAgain(links), "the links as they were saved");
    std::vector<std::string> kept = model::ReadLines(saved);
    std::ranges::sort(kept);
    Require(std::ranges::includes(kept, LinesToKeep(bytes)), "the lines that are kept");
    Require(SaveLinks(links, stamp), "SaveLinks again");
    RequireEqual(server.Get(kPath), saved, "the file saved again");
}

} // namespace bv::fuzz
