// Finding, listing and reading records of the user list.
#include "users/user_list.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "support/help_pages.h"
#include "support/memory_server.h"
#include "users/user_entry.h"
#include "users/user_record.h"
#include "voice/format.h"

namespace bv {
namespace {

using test::MemoryServer;
using test::VectorList;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";

const std::string kList =
    "[BRIVANE]\r\nType: UserList\r\n\r\n"
    "[USER]\r\nFullname: Everybody\r\nName: (default)\r\nGroup: @A\r\n\r\n"
    "[GROUP]\r\nName: @A\r\nFullname: Accounts\r\nUsername: ann\r\n"
    "[USER]\r\nUsername: ann\r\nGroup: @a\r\nFullname: Ann\r\nName: ANN\r\n"
    "[user] one more\r\nName: bob\r\nUsername: BOB\r\nFullname: (x)\r\nMailName: *\r\n"
    "[USER]\r\nName: ANN\r\nName: Second\r\nUsername: longusername\r\n MailName: (a)\r\nmailname:(b\r\n"
    "[GROUP]\r\nName: (groups)\r\n"
    "[USER]\r\nFullname: No name\r\n[USER2]\r\nName: NONE\r\n";

struct Server : MemoryServer {
    explicit Server(const std::string& list = kList) {
        Load();
        Put(kPath, list);
    }
};

TEST(FindUserListEntry, LooksByEitherName) {
    using enum FindBy;
    using enum RecordKind;
    const struct {
        const char* Key;
        FindBy By;
        std::optional<std::string_view> Match;
        RecordKind Kind;
        const char* Found; // what it is called on the other side, or "-"
    } rows[] = {
        {"ann", Name, {}, User, "ann"},      {"ANN", Name, "LONGUSERNAME", User, "longuser"},
        {"ANN", Name, "ANN", User, "ann"},   {"ANN", Name, "bob", User, "-"},
        {"Second", Name, {}, User, "-"},     {"@A", Name, {}, User, "-"},
        {"@a", Name, {}, Group, "ann"},      {"AN", Name, {}, User, "-"},
        {"Ann", Username, {}, User, "ANN"},  {"bob", Username, "BOB", User, "bob"},
        {"bob", Username, "ANN", User, "-"}, {"", Username, {}, User, "-"},
        {"ann", Username, {}, Group, "@A"},  {"NONE", Name, {}, User, "-"},
        {"(DEFAULT)", Name, {}, User, ""},
    };
    const Server server;
    for (const auto& row : rows) {
        FoundEntry entry{true, "old"};
        EXPECT_TRUE(FindUserListEntry(row.Key, row.By, row.Match, row.Kind, entry));
        EXPECT_EQ(entry.Found ? entry.OtherName.String() : "-", row.Found) << row.Key;
    }
}

TEST(FillUserList, ShowsWhatTheViewTakes) {
    using enum UserSelection;
    using enum UserListFormat;
    const struct {
        UserListView View;
        std::vector<std::string> Lines;
    } rows[] = {
        {{}, {"ANN", "bob", "ANN", ""}},
        {{AllUsers, true, true, NameAndFullname, false},
         {"(default)|Everybody", "ANN|Ann", "bob|(x)", "ANN|", "|No name", "@A|Accounts", "(groups)|"}},
        {{None, true, false, NameAndFullname, true}, {"@A|Accounts|"}},
        {{None, false, true, NameOnly, false}, {}},
        {{MailProfiles, false, false, UsernameNameFullname, true}, {"bob\tbob\t(x)|", "longusername\tANN\t|"}},
        {{AllUsers, false, true, NameOnly, true}, {"(default)|@A", "ANN|@a", "bob|", "ANN|", "|"}},
    };
    const Server server;
    for (const auto& [view, lines] : rows) {
        for (const char* separator : {"\t", "  -  "}) {
            std::vector<std::string> expected = lines;
            for (std::string& line : expected) {
                for (std::size_t at = 0; (at = line.find('|')) != std::string::npos;) line.replace(at, 1, separator);
            }
            VectorList list, second;
            list.Entries = second.Entries = {"old"};
            list.Combo = second.Combo = separator[0] == ' ';
            EXPECT_TRUE(FillUserList(list, &second, view));
            EXPECT_EQ(list.Entries, expected);
            EXPECT_EQ(second.Entries, expected);
        }
    }
}

TEST(FillGroupMemberList, AddsTheUsersOfAGroup) {
    const Server server;
    VectorList list;
    list.Entries = {"old"};
    EXPECT_TRUE(FillGroupMemberList("@A", list, true, true));
    EXPECT_THAT(list.Entries, ElementsAre("old", "ANN\tAnn\t@a"));
}

// A record as its keys show it, those left out that are empty, "NO", default or granted.
std::string Shown(const UserRecord& record) {
    std::string text;
    for (const RecordKey& key : RecordKeys()) {
        if (!HasKey(key, RecordKind::User)) continue;
        const std::string value = key.Field.Text(record);
        if (value.empty() || value == "NO" || value == "DEFAULT") continue;
        text += std::string(key.Field.Key) + value + "|";
    }
    return text;
}

const std::string kGranted =
    "NetworkEdit:YES|Urgent:YES|PrivateEdit:YES|SubmitAny:YES|Dial:Local National International|";

TEST(ReadUserRecord, TakesEachKeyByItsRule) {
    const struct {
        std::string Body;
        std::string User;
        std::string Group;
    } rows[] = {
        {"", kGranted, ""},
        {"Fullname:  Ann  B \r\nfullname: Other\r\nGroup: @A\r\n", "Fullname:Ann  B|Group:@A|" + kGranted,
         "Fullname:Ann  B|"},
        {"Username: u\r\n", "Username:u|Netware:u|LanManager:u|" + kGranted, ""},
        {"LanManager: l\r\nNetware: n\r\n", "Username:n|Netware:n|LanManager:l|" + kGranted, ""},
        {"LanManager: l\r\n", "Username:l|Netware:l|LanManager:l|" + kGranted, ""},
        {"PrintSentDevice: D\r\nPrintSentBin2: B\r\nPrintSentSquash: yes\r\nPrintSentSquash2: VERTICAL \r\n",
         "PrintSentDevice:D|PrintSentSquash:YES|PrintSentBin2:B|PrintSentSquash2:VERTICAL|" + kGranted,
         "PrintSentSquash:YES|PrintSentSquash2:VERTICAL|"},
        {"PrintRecdPaper: P\r\nPrintRecdDevice2: D\r\nPrintRecdSquash: Vertical\r\nPrintRecdSquash2: YESS\r\n",
         "PrintRecdPaper:P|PrintRecdSquash:VERTICAL|PrintRecdDevice2:D|" + kGranted,
         "PrintRecdPaper:P|PrintRecdSquash:VERTICAL|PrintRecdDevice2:D|"},
        {"PrintSentOptions: unstatused\r\nPrintRecdOptions: delete,message\r\n",
         "PrintSentOptions:STATUS|PrintRecdOptions:MESSAGE DELETE|" + kGranted, "PrintRecdOptions:MESSAGE DELETE|"},
        {"MailInbox:\r\nMailGateway: on\r\nMailName: (m)\r\n", "MailInbox:YES|MailGateway:YES|MailName:(m)|" + kGranted,
         "MailInbox:YES|MailGateway:YES|MailName:(m)|"},
        {"MailInbox: maybe\r\nMailName=m\r\n", kGranted, ""},
        {"Admin: Y\r\nUrgent: N\r\nDial: Local\r\nSendTime: AFTER 09:00 FRI\r\n",
         "NetworkEdit:YES|Admin:YES|PrivateEdit:YES|SubmitAny:YES|Dial:Local|SendTime:AFTER 09:00  FRI|", ""},
        // what is wrong lifts the limits, and keeps the words that were read
        {"Admin: Y\r\nUrgent: x\r\nDial: Local\r\nSendTime: AFTER 09:00 BEFORE 10:00 FRI\r\n",
         "NetworkEdit:YES|Urgent:YES|Admin:YES|PrivateEdit:YES|SubmitAny:YES|Dial:Local National International|"
         "SendTime:AFTER 09:00 BEFORE 10:00  MON TUE WED THU FRI SAT SUN|",
         ""},
    };
    for (const auto& [body, user, group] : rows) {
        Server server("[USER]\r\nName: iris\r\n" + body + "\r\n[GROUP]\r\nName: IRIS\r\n" + body);
        UserRecord record;
        record.Fullname = "old";
        EXPECT_TRUE(ReadUserRecord("Iris", record, RecordKind::User));
        EXPECT_EQ(Shown(record), user) << body;
        EXPECT_TRUE(ReadUserRecord("Iris", record, RecordKind::Group));
        EXPECT_EQ(Shown(record), group + "SendTime:AFTER 00:00 BEFORE 00:00|") << body;
        EXPECT_TRUE(record.SentOptionsAreDefault);
        EXPECT_THAT(server.Front.Said, IsEmpty());
    }
}

// A default record has no names of its own, however it is asked for.
TEST(ReadUserRecord, KnowsTheDefaults) {
    Server server("[USER]\r\nName: (d)\r\nFullname: F\r\nUsername: u\r\nAdmin: Y\r\n[GROUP]\r\nName: @A\r\n");
    UserRecord record;
    for (const std::optional<std::string_view> name : {std::optional<std::string_view>(), {"(D)"}}) {
        EXPECT_TRUE(ReadUserRecord(name, record, RecordKind::User));
        EXPECT_TRUE(record.Fullname.IsEmpty() && record.Username.IsEmpty() && record.Netware.IsEmpty());
        EXPECT_EQ(record.Permissions.Flags, kDefaultPermissionFlags | kAdmin);
    }
    EXPECT_TRUE(ReadUserRecord({}, record, RecordKind::Group));
    EXPECT_EQ(record, UserRecord());
    EXPECT_TRUE(ReadUserRecord("@B", record, RecordKind::Group));
    EXPECT_EQ(record, UserRecord());
    EXPECT_FALSE(ReadUserRecord("@A", record, RecordKind::User));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Brivane user @A not found"));

    server.Put(kPath, "[USER]\r\nName: A\r\n");
    UserRecord expected;
    expected.Permissions = {{0, 0, 0, 0, kEveryDay}, kEveryDialClass, 0};
    EXPECT_TRUE(ReadUserRecord({}, record, RecordKind::User));
    EXPECT_EQ(record, expected);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("warning: Default user definitions not found"));
}

TEST(VisitUserRecords, ReadsEachOnceUntilToldToStop) {
    const Server server;
    std::vector<std::string> seen;
    EXPECT_TRUE(VisitUserRecords(RecordKind::User, [&](const StoredRecord& user) {
        seen.push_back(user.Name + "=" + user.Record.Fullname.String());
        return seen.size() < 4;
    }));
    EXPECT_THAT(seen, ElementsAre("(default)=", "ANN=Ann", "bob=(x)", "ANN="));
}

TEST(UserList, ThatCannotBeOpenedIsNamed) {
    MemoryServer server;
    server.Load();
    VectorList list;
    UserRecord record;
    FoundEntry entry;
    EXPECT_FALSE(FindUserListEntry("", FindBy::Username, {}, RecordKind::User, entry));
    EXPECT_FALSE(ReadUserRecord("A", record, RecordKind::User));
    EXPECT_FALSE(VisitUserRecords(RecordKind::User, {}));
    EXPECT_FALSE(FillUserList(list, nullptr, {}));
    EXPECT_FALSE(FillGroupMemberList("A", list, false, false));
    EXPECT_EQ(server.Front.Said, std::vector<std::string>(5, "error: Unable to open file " + kPath));
}

TEST(RecordKeys, RefuseFromAPersonWhatTheFileWouldNotGiveBack) {
    using Entry = std::pair<std::string, std::string>;
    const auto rowOf = [](const std::string& key) {
        return std::ranges::find(RecordKeys(), key, [](const RecordKey& row) { return row.Field.Key; });
    };
    for (const auto& [key, value] :
         {Entry("Fullname:", std::string(100, 'x')), Entry("Fullname:", ""), Entry("PrintSentSquash:", "vertical"),
          Entry("PrintRecdOptions:", "status,DELETE"), Entry("PrintRecdOptions:", "default"),
          Entry("PrintSentOptions:", ""), Entry("MailInbox:", "on"), Entry("Urgent:", "no"),
          Entry("Dial:", "National 1"), Entry("SendTime:", "AFTER 9:00 MON")}) {
        UserRecord record;
        EXPECT_TRUE(rowOf(key)->Field.Store(record, value)) << key << value;
        const UserRecord entered = record;
        EXPECT_TRUE(rowOf(key)->Field.Store(record, rowOf(key)->Field.Text(record))) << key << value;
        EXPECT_EQ(record, entered) << key << value;
    }
    for (const auto& [key, value] :
         {Entry("Fullname:", std::string(101, 'x')), Entry("Fullname:", "a\tb"), Entry("Fullname:", "a "),
          Entry("Group:", "@TWELVECHARS"), Entry("PrintSentSquash:", ""), Entry("PrintSentOptions:", "DELETE"),
          Entry("PrintSentOptions:", "STATUS DEFAULT"), Entry("MailInbox:", "x"), Entry("MailName:", "(x"),
          Entry("Urgent:", "never"), Entry("Dial:", "World"), Entry("SendTime:", "AFTER 9:00am"),
          Entry("SendTime:", "AFTER 0:00 MON")}) {
        UserRecord record;
        EXPECT_FALSE(rowOf(key)->Field.Store(record, value)) << key << value;
        EXPECT_EQ(record, UserRecord()) << key << value;
    }
}

TEST(DeviceNames, TellTheirKinds) {
    for (const char* name : {"PRINT-1", "network", "HpPrinter", "PSPRINT"}) EXPECT_FALSE(IsFaxDevice(name)) << name;
    for (const char* name : {"FAX-1", "PRIN", "XPRINT", ""}) EXPECT_TRUE(IsFaxDevice(name)) << name;
    EXPECT_TRUE(IsNetworkDevice("NetworkA") && !IsNetworkDevice("NETWOR"));
}

TEST(HelpPages, SayOfEachKeyWhatTheTableSays) {
    std::vector<std::string> expected;
    for (const RecordKey& key : RecordKeys())
        if (HasKey(key, RecordKind::User)) expected.push_back(HelpRowOf(HelpOf(key, RecordKind::User)));
    EXPECT_THAT(test::HelpRows(202, 207), testing::UnorderedElementsAreArray(expected));
}

} // namespace
} // namespace bv
