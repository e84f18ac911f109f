// The rules of inward routing as the lines of their file (routing_file.h): what a line is read as, and how a rule is
// written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bv {

enum class RoutingKind { Sender, SubAddress, Forward };

// The header of a kind's paragraph.
constexpr std::string_view HeaderOf(RoutingKind kind) {
    constexpr std::string_view kHeaders[] = {"[SENDERID]", "[SUBADDR]", "[FORWARD]"};
    return kHeaders[static_cast<int>(kind)];
}

inline constexpr char kRecordMarker = '@'; // begins the line that opens a sender's record

struct SenderIdRule {
    std::string RecordKey;    // as the file has it; empty: the sender's own (SenderRecordKey)
    std::string Sender;       // the identifier as entered
    std::string Organisation; // of the sender, or empty
    std::string Addressee;    // "Messages for": a user or a word in parentheses; empty: a record without entries
    std::string User;         // "Route to"
    int Record = 0;           // a reader counts the records of the file, from 0

    friend bool operator==(const SenderIdRule&, const SenderIdRule&) = default;
};

struct SubAddressRule {
    std::string SubAddress;
    std::string User; // in upper case when read

    friend bool operator==(const SubAddressRule&, const SubAddressRule&) = default;
};

struct ForwardRule {
    std::string User;
    std::string Target;   // in upper case when read
    bool Deletes = false; // the fax leaves the first user; else that user keeps a copy

    friend bool operator==(const ForwardRule&, const ForwardRule&) = default;
};

// The name as the key of a rule, as it begins a line: with its colon.
std::string RoutingKey(std::string_view name);

// The key of a sender's record; empty for an identifier without letters and digits, which cannot be filed.
std::string SenderRecordKey(std::string_view sender);

// Whether the rule, written to the file, is read as the same and is found again by its key.
bool CanBeKept(const SenderIdRule& rule);
bool CanBeKept(const SubAddressRule& rule);
bool CanBeKept(const ForwardRule& rule);

// A rule's line without its end, and the line that opens a sender's record.
std::string RecordLineOf(const SenderIdRule& rule);
std::string LineOf(const SenderIdRule& rule);
std::string LineOf(const SubAddressRule& rule);
std::string LineOf(const ForwardRule& rule);

// The parts of these lines: the key of a record with its colon, its value, and the value of a forwarding.
std::string RecordKeyText(const SenderIdRule& rule);
std::string RecordValue(const SenderIdRule& rule);
std::string ForwardValue(const ForwardRule& rule);

// What a line of each kind says; none, or false, when it is malformed or no rule. An addressee's line completes the
// rule that its record's line has begun.
std::optional<SenderIdRule> ParseRecordLine(std::string_view line);
bool ParseAddresseeLine(std::string_view line, SenderIdRule& rule);
std::optional<SubAddressRule> ParseSubAddressLine(std::string_view line);
std::optional<ForwardRule> ParseForwardLine(std::string_view line);

// The key of a line of sub-addresses or forwardings, without its colon, also of one that is no rule.
std::optional<std::string> KeyOfLine(std::string_view line);

} // namespace bv
