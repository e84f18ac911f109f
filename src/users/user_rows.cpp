#include "users/user_rows.h"

#include <array>
#include <string>
#include <unordered_map>

#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/permissions.h"
#include "users/user_file.h"
#include "users/user_list.h"

namespace bv {
namespace {

// What the lists show, by its index among the keys that are looked for.
enum Key : std::size_t {
    kName,
    kFullname,
    kGroup,
    kUsername,
    kNetware,
    kLanManager,
    kMailName,
    kSentDevice,
    kRecdDevice,
    kFirstPermission
};
constexpr std::array<std::string_view, kFirstPermission> kTextKeys = {
    kNameKey,      "Fullname:", "Group:",           "Username:",        "Netware:",
    "LanManager:", "MailName:", "PrintSentDevice:", "PrintRecdDevice:",
};

constexpr auto kKeys = [] {
    std::array<std::string_view, kFirstPermission + kPermissionKeys.size()> keys{};
    for (std::size_t i = 0; i < kTextKeys.size(); ++i) keys[i] = kTextKeys[i];
    for (std::size_t i = 0; i < kPermissionKeys.size(); ++i) keys[kFirstPermission + i] = kPermissionKeys[i].Key;
    return keys;
}();

class Reader {
  public:
    Reader(ControlStream& list, RecordKind kind) : records_(list, RecordHeader(kind), kKeys) {}

    // To the next record that is not the default one.
    bool Next() {
        while (records_.Next()) {
            name_ = Value(kName);
            if (!IsDefaultName(name_)) return true;
        }
        return false;
    }

    [[nodiscard]] const std::string& Name() const { return name_; }

    // Valid until the next value is asked for.
    [[nodiscard]] std::string_view Value(std::size_t key) const {
        return records_.Value(key).value_or(std::string_view());
    }

    [[nodiscard]] std::string_view NetworkName() const {
        for (const Key key : {kUsername, kNetware, kLanManager})
            if (const std::string_view name = Value(key); !name.empty()) return name;
        return {};
    }

    [[nodiscard]] std::string Rights() const {
        std::string text;
        for (std::size_t i = 0; i < kPermissionKeys.size(); ++i) {
            const PermissionKey& key = kPermissionKeys[i];
            const std::optional<std::string_view> value = records_.Value(kFirstPermission + i);
            std::uint8_t flags = kDefaultPermissionFlags;
            if (!value || !ParsePermission(*value, key.Flag, flags)) continue;
            if (flags == kDefaultPermissionFlags || key.Flag == kGroupAdmin) continue;
            const std::string_view name = key.Key.substr(0, key.Key.size() - 1);
            text.append(text.empty() ? "" : ", ").append((flags & key.Flag) == 0 ? "no " : "").append(name);
        }
        return text;
    }

    // The printer of received faxes, and behind a stroke that of sent ones.
    [[nodiscard]] std::string Printing() const {
        std::string text(Value(kRecdDevice));
        const std::string_view sent = Value(kSentDevice);
        if (!sent.empty() && sent != text) text.append(" / ").append(sent);
        return text;
    }

  private:
    RecordWalker records_;
    std::string name_;
};

bool IsProfile(std::string_view mailName) { return mailName.starts_with('(') || mailName.starts_with('*'); }

void AddUsers(ControlStream& list, bool profilesOnly, RowTable& rows) {
    constexpr Position kShownPart = 3; // a third of the file at most, as a rule
    rows.Begin(kUserColumns, static_cast<std::size_t>(list.Length().value_or(0) / kShownPart));
    Reader reader(list, RecordKind::User);
    while (reader.Next()) {
        if (profilesOnly && !IsProfile(reader.Value(kMailName))) continue;
        rows.Add(reader.Name());
        rows.Add(reader.Value(kFullname));
        rows.Add(reader.Value(kGroup));
        rows.Add(reader.NetworkName());
        rows.Add(reader.Value(kMailName));
        rows.Add(reader.Rights());
        rows.Add(reader.Printing());
    }
}

using MemberCounts = std::unordered_map<std::string, std::size_t>;

MemberCounts CountMembers(ControlStream& list) {
    MemberCounts counts;
    Reader reader(list, RecordKind::User);
    while (reader.Next())
        if (const std::string_view group = reader.Value(kGroup); !group.empty()) ++counts[UpperText(group)];
    return counts;
}

void AddGroups(ControlStream& list, RowTable& rows) {
    rows.Begin(kGroupColumns);
    const MemberCounts members = CountMembers(list);
    list.Rewind();
    Reader reader(list, RecordKind::Group);
    while (reader.Next()) {
        rows.Add(reader.Name());
        rows.Add(reader.Value(kFullname));
        const auto counted = members.find(UpperText(reader.Name()));
        rows.Add(std::to_string(counted == members.end() ? 0 : counted->second));
        rows.Add(reader.Printing());
    }
}

} // namespace

bool ReadUserRows(UserListKind kind, RowTable& rows) {
    rows.Begin(kind == UserListKind::Groups ? std::size_t{kGroupColumns} : std::size_t{kUserColumns});
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return false;
    if (kind == UserListKind::Groups)
        AddGroups(list, rows);
    else
        AddUsers(list, kind == UserListKind::Profiles, rows);
    return WasRead(list);
}

} // namespace bv
