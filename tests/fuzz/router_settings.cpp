// Paragraph [ROUTER] of SETUP.INI, whatever its bytes: saving the settings that were read keeps them, and every line
// that is none of them.
#include "lcr/router_settings.h"

#include <algorithm>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\SETUP.INI";

bool IsOwn(const std::string& line) {
    constexpr const char* kKeys[] = {
        "LocalServerID:",      "EmailLoginName:",        "EmailLoginParams:",  "EmailType:",
        "EmailInboxPollFreq:", "EmailDeleteInvalidMsg:", "WanInboxDirectory:", "WanInboxPollFreq:",
    };
    return std::ranges::any_of(kKeys, [&](const char* key) { return model::Begins(line, key); });
}

// The lines, less empty ones, outside the first paragraph of that name, and in it those that are not its own.
std::vector<std::string> OtherLines(std::string_view text) {
    std::vector<std::string> lines;
    bool isInside = false;
    bool wasInside = false;
    for (const std::string& line : model::ReadLines(text)) {
        if (model::IsParagraph(line)) isInside = !wasInside && model::Compare(line, "[ROUTER]") == 0;
        wasInside |= isInside;
        const bool isHeader = isInside && model::IsParagraph(line);
        if (!line.empty() && !isHeader && !(isInside && IsOwn(line))) lines.push_back(line);
    }
    return lines;
}

// A quote ends a text that is written in quotes.
bool HasQuotes(const RouterSettings& settings) {
    const std::string* texts[] = {&settings.LocalServerDescription, &settings.EmailLoginName, &settings.NotesIdFile};
    return std::ranges::any_of(texts, [](const std::string* text) { return text->find('"') != std::string::npos; });
}

} // namespace

void TryInput(std::string_view bytes) {
    test::MemoryServer server;
    server.Load();
    server.Put(kPath, bytes);
    RouterSettings settings;
    Require(ReadRouterSettings(settings) != RouterReading::Failed, "ReadRouterSettings");
    Require(WriteRouterSettings(settings), "WriteRouterSettings");
    const std::string saved = server.Get(kPath);
    Require(OtherLines(saved) == OtherLines(bytes), "the other lines");
    if (HasQuotes(settings)) return;
    RouterSettings again;
    Require(ReadRouterSettings(again) == RouterReading::Done && (again == settings || again == AsRead(settings)),
            "the settings as read again");
    Require(WriteRouterSettings(again), "WriteRouterSettings again");
    RequireEqual(server.Get(kPath), saved, "the file saved again");
}

} // namespace bv::fuzz
