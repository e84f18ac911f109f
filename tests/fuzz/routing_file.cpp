// ROUTING.INI, whatever its bytes below a good header: its rules, and what writing and deleting make of them.
// Parameters: sub-address | user | sender | addressee.
#include "routing/routing_file.h"

#include <algorithm>
#include <set>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\ROUTING.INI";
const std::string kHeader = "[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n\r\n";

using Rules = std::vector<std::string>;

std::string Upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return text;
}

std::string Unquoted(std::string token) {
    if (token.starts_with('"')) token.erase(0, 1);
    if (token.ends_with('"')) token.pop_back();
    return token;
}

// The tokens of a line; what lies behind the last is empty.
Rules Tokens(std::string line) {
    Rules tokens;
    while (tokens.size() < 6) {
        const model::Token token = model::FirstToken(line);
        tokens.push_back(token.Text);
        line = token.Next ? line.substr(*token.Next) : "";
    }
    return tokens;
}

// A token that is a key, without its colon and escape; empty when it is none.
std::string KeyIn(std::string token) {
    if (!token.ends_with(':')) return "";
    token.pop_back();
    return token.starts_with('\\') ? token.substr(1) : token;
}

// The lines of a paragraph that count; none without it.
std::optional<Rules> LinesOf(std::string_view text, const std::string& header) {
    auto line = model::FindParagraph(text, 0, header);
    if (!line) return {};
    Rules lines;
    while ((line = model::FindKeyLine(text, line->Next, ""))) lines.push_back(line->Text);
    return lines;
}

std::string SubAddressOn(const std::string& line) {
    const Rules tokens = Tokens(line);
    const std::string key = KeyIn(tokens[0]);
    return key.empty() ? "" : key + "\n" + Upper(tokens[1]);
}

std::string ForwardOn(const std::string& line) {
    Rules tokens = Tokens(line);
    const std::string key = KeyIn(tokens[0]);
    if (tokens[1].starts_with('"')) tokens.erase(tokens.begin() + 1);
    if (key.empty() || Upper(tokens[1]) != "LAN-ANY" || !tokens[2].starts_with('"')) return "";
    return key + "\n" + Upper(Unquoted(tokens[2])) + "\n" + (Upper(tokens[3]) == "DELETE" ? "moves" : "copies");
}

Rules Expected(std::string_view text, const std::string& header, std::string (*on)(const std::string&)) {
    Rules rules;
    const auto lines = LinesOf(text, header);
    if (!lines) return {"failed"};
    for (const std::string& line : *lines)
        if (const std::string rule = on(line); !rule.empty()) rules.push_back(rule);
    return rules;
}

Rules ListedSubAddresses() {
    ControlStream file = OpenRoutingFile();
    Rules rules;
    const bool read =
        ReadSubAddressRules(file, [&](const auto& rule) { rules.push_back(rule.SubAddress + "\n" + rule.User); });
    return read ? rules : Rules{"failed"};
}

Rules ListedForwards() {
    ControlStream file = OpenRoutingFile();
    Rules rules;
    const bool read = ReadForwardRules(file, [&](const auto& rule) {
        rules.push_back(rule.User + "\n" + rule.Target + "\n" + (rule.Deletes ? "moves" : "copies"));
    });
    return read ? rules : Rules{"failed"};
}

using SenderRules = std::vector<SenderIdRule>;

SenderRules ListedSenders() {
    ControlStream file = OpenRoutingFile();
    SenderRules rules;
    ReadSenderIdRules(file, [&](const SenderIdRule& rule) { rules.push_back(rule); });
    return rules;
}

// How many records there are with the key of this one.
std::size_t RecordsLike(const SenderIdRule& wanted) {
    std::set<int> records;
    for (const SenderIdRule& rule : ListedSenders())
        if (model::Compare(rule.RecordKey, wanted.RecordKey) == 0) records.insert(rule.Record);
    return records.size();
}

void TrySubAddress(const SubAddressRule& rule) {
    const auto ofKey = [&] {
        Rules rules = ListedSubAddresses();
        std::erase_if(rules, [&](const std::string& line) { return !model::Begins(line, rule.SubAddress + "\n"); });
        return rules;
    };
    Require(WriteSubAddressRule(rule), "WriteSubAddressRule");
    Require(ofKey() == Rules{rule.SubAddress + "\n" + rule.User}, "the written rule alone has its key");
    Require(DeleteSubAddressRule(rule.SubAddress), "DeleteSubAddressRule");
    Require(ofKey().empty(), "no rule is left");
}

void TrySender(SenderIdRule rule) {
    rule.RecordKey = SenderRecordKey(rule.Sender);
    Require(WriteSenderIdRule(rule), "WriteSenderIdRule");
    const SenderRules written = ListedSenders();
    const std::size_t records = RecordsLike(rule);
    const auto isIt = [&](const SenderIdRule& other) {
        return other.Sender == rule.Sender && other.Addressee == rule.Addressee && other.User == rule.User;
    };
    Require(std::ranges::any_of(written, isIt), "the written sender");
    Require(DeleteSenderIdRule(rule), "DeleteSenderIdRule");
    Require(RecordsLike(rule) == records, "the record stays");
    Require(DeleteSenderRecord(rule), "DeleteSenderRecord");
    Require(RecordsLike(rule) + 1 == records, "the record goes alone");
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    test::MemoryServer server;
    server.Load();
    const std::string text = kHeader + std::string(input.Text);
    server.Put(kPath, text);
    Require(ListedSubAddresses() == Expected(text, "[SUBADDR]", SubAddressOn), "the rules by sub-address");
    Require(ListedForwards() == Expected(text, "[FORWARD]", ForwardOn), "the rules of forwarding");

    const SubAddressRule rule{std::string(input.Parameters[0]), std::string(input.Parameter(1).value_or(""))};
    const SenderIdRule sender{"", std::string(input.Parameter(2).value_or("")), "O",
                              std::string(input.Parameter(3).value_or("")), rule.User};
    if (CanBeKept(rule)) TrySubAddress(rule);
    if (CanBeKept(sender)) TrySender(sender);
    server.Front.TakeSaid();
}

} // namespace bv::fuzz
