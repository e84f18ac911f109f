// MAILLIST.INI, whatever its bytes: who is in it, and that a change touches one record and an upgrade none of the
// others. Parameters: server user | e-mail name.
#include "mailgw/mail_list.h"

#include <algorithm>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "platform/ascii.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\MAILLIST.INI";
using Records = std::vector<std::string>;

Records Listed() {
    Records records;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        std::string& text = records.emplace_back();
        for (const WholeValue& value :
             {user.Brivname, user.Emailname, user.EmailBrivname, user.SubAddr, user.PrintRecd, user.PrintSent})
            text += value.String() + "|";
        return true;
    });
    Require(isRead, "the list is read");
    return records;
}

Records Expected(std::string_view text) {
    Records records;
    for (auto at = model::FindParagraph(text, 0, "[USER]"); at; at = model::FindParagraph(text, at->Next, "[USER]")) {
        std::string& record = records.emplace_back();
        for (const char* key : {"Brivname:", "Emailname:", "EmailBrivname:", "SubAddr:", "PrintRecd:", "PrintSent:"}) {
            const auto line = model::FindKeyLine(text, at->Next, key);
            record += (line ? model::Value(line->Text) : std::string()) + "|";
        }
    }
    return records;
}

// The new text without the piece by which it has grown.
std::string Ungrown(std::string_view before, std::string_view after) {
    const auto start = static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
    return std::string(after.substr(0, start)).append(after.substr(start + after.size() - before.size()));
}

// A blank behind its key pushes the last character of such a line out of the reader's sight.
bool HasFullLine(std::string_view text) {
    return std::ranges::any_of(model::ReadLines(text), [](const std::string& line) { return line.size() == 280; });
}

void TryChanges(test::MemoryServer& server, const std::string& user, const std::string& email) {
    const std::string before = server.Get(kPath);
    Require(AddMailUser(user, email), "AddMailUser");
    const std::string after = server.Get(kPath);
    const std::string record = "[USER]\r\nBrivname: " + user + "\r\nEmailname: " + email + "\r\nProfile: NO\r\n\r\n";
    const bool isCut = !before.empty() && !before.ends_with('\n');
    const std::size_t grown = after.size() - before.size();
    Require(grown == record.size() || (isCut && grown == record.size() + 2), "one record more, and nothing else");
    Require(after.find(record) != std::string::npos, "the new record");
    RequireEqual(Ungrown(before, after), before, "the rest of the list");
    const std::size_t count = Listed().size();
    Require(DeleteMailUser(user, email), "DeleteMailUser");
    Require(Listed().size() + 1 == count, "one record less");
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    test::MemoryServer server;
    server.Load();
    server.Put(kPath, input.Text);
    Require(Listed() == Expected(input.Text), "who is in the list");

    // Values that come back as they are.
    const auto value = [&](std::size_t index) {
        const std::string text = model::Value("x:" + model::Clean(input.Parameter(index).value_or("")));
        return std::string(TrimBlanks(text.substr(0, 200)));
    };
    const std::string user = value(0);
    const std::string email = value(1);
    if (!user.empty() && !email.empty() && !user.starts_with('(')) TryChanges(server, user, email);

    const Records old = Listed();
    Require(UpgradeMailList(), "UpgradeMailList");
    Require(Listed() == old || HasFullLine(input.Text), "the records after the upgrade");
    const std::string upgraded = server.Get(kPath);
    Require(UpgradeMailList(), "UpgradeMailList again");
    RequireEqual(server.Get(kPath), upgraded, "the list upgraded again");
    server.Front.TakeSaid();
}

} // namespace bv::fuzz
