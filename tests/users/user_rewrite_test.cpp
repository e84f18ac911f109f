// Changes of the user list: its bytes before, one action, its bytes after.
#include "users/user_rewrite.h"

#include <gmock/gmock.h>

#include <functional>
#include <random>

#include "platform/ascii.h"
#include "support/memory_server.h"
#include "users/user_list.h"

namespace bv {
namespace {

using namespace std::string_literals;
using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kTemporary = "F:\\BRIVANE\\B-DB\\USERLIST.TMP";

// A user that may do everything, as all its lines are then those in the file.
UserRecord Plain(std::string_view fullname = "") {
    UserRecord record;
    record.Fullname = fullname;
    record.Permissions = {{0, 0, 0, 0, kEveryDay}, kEveryDialClass, kDefaultPermissionFlags};
    record.SentOptionsAreDefault = record.RecdOptionsAreDefault = true;
    return record;
}

UserRecord Full() {
    UserRecord record = Plain("Full");
    record.Group = "@A";
    record.Username = "u";
    record.Netware = "n";
    record.LanManager = "l";
    record.MailInbox = record.MailGateway = true;
    record.MailName = "(m";
    record.Permissions = {{9, 0, 17, 30, 2}, 1, kAdmin | kRushToTop};
    record.PrintSent = {"D1", "B1", "P1", SquashMode::Vertical};
    record.PrintSent2 = {"D2", "B2", "P2", SquashMode::Yes};
    record.PrintRecd = {"D3", "B3", "P3", SquashMode::Vertical};
    record.PrintRecd2 = {"D4", "B4", "P4", SquashMode::Vertical};
    record.SentOptionsAreDefault = record.RecdOptionsAreDefault = false;
    record.SentMessage = record.RecdStatus = record.RecdDelete = true;
    return record;
}

const std::string kRecdPrinters = "PrintRecdDevice: D3\r\nPrintRecdBin: B3\r\nPrintRecdPaper: P3\r\n";
const std::string kRecdPrinters2 =
    "PrintRecdDevice2: D4\r\nPrintRecdBin2: B4\r\nPrintRecdPaper2: P4\r\nPrintRecdSquash2: VERTICAL\r\n";

TEST(UserRecordLines, AreWrittenInOrderUnderTheirConditions) {
    EXPECT_EQ(UserRecordLines("N", Plain(), {}, RecordKind::User),
              "Name: N\r\nFullname: \r\nUsername: \r\nNetware: \r\nLanManager: \r\n");
    EXPECT_EQ(UserRecordLines("N", Plain("a\r\n[USER]\x81"), {}, RecordKind::Group),
              "Name: N\r\nFullname: a  [USER]\x81\r\n");
    EXPECT_EQ(
        UserRecordLines("N", Full(), {}, RecordKind::User),
        "Name: N\r\nFullname: Full\r\nGroup: @A\r\nUsername: u\r\nNetware: n\r\nLanManager: l\r\n"
        "PrintSentDevice: D1\r\nPrintSentBin: B1\r\nPrintSentPaper: P1\r\nPrintSentSquash: VERTICAL\r\n"
        "PrintSentDevice2: D2\r\nPrintSentBin2: B2\r\nPrintSentPaper2: P2\r\nPrintSentSquash2: YES\r\n" +
            kRecdPrinters + "PrintRecdSquash: VERTICAL\r\n" + kRecdPrinters2 +
            "PrintSentOptions: MESSAGE\r\nPrintRecdOptions: STATUS DELETE\r\nMailInbox: YES\r\nMailGateway: YES\r\n"
            "MailName: *\r\nNetworkEdit: NO\r\nUrgent: NO\r\nAdmin: YES\r\nRushToTop: YES\r\nPrivateEdit: NO\r\n"
            "SubmitAny: NO\r\nDial: Local\r\nSendTime: AFTER 09:00 BEFORE 17:30  MON\r\n");
    EXPECT_EQ(UserRecordLines("N", Full(), {}, RecordKind::Group),
              "Name: N\r\nFullname: Full\r\n" + kRecdPrinters + kRecdPrinters2 + "PrintRecdOptions: STATUS DELETE\r\n");

    UserRecord record = Plain();
    record.RecdOptionsAreDefault = false;
    record.PrintRecd.Squash = SquashMode::Yes;
    record.MailName = "kept only with a flag";
    record.Permissions.DialMask = 0;
    const std::string oldBody = "dial: Local\r\n; note\t \r\nNAME: X\nGroupAdmin: N\r\n\r\n" + std::string(300, 'x') +
                                "\nPrintSentOptions=x\r\n Fullname: y\r\nSubmitAny:\r\nlast";
    EXPECT_EQ(UserRecordLines("N", record, oldBody, RecordKind::Group),
              "Name: N\r\nFullname: \r\nPrintRecdSquash: YES\r\nPrintRecdOptions: \r\n; note\r\nGroupAdmin: N\r\n\r\n" +
                  std::string(280, 'x') + "\r\nPrintSentOptions=x\r\n Fullname: y\r\nlast\r\n");
    EXPECT_EQ(UserRecordLines("N", record, {}, RecordKind::User),
              "Name: N\r\nFullname: \r\nUsername: \r\nNetware: \r\nLanManager: \r\nPrintRecdSquash: YES\r\n"
              "PrintRecdOptions: \r\nDial: \r\n");
}

// A whole record without lines of its own kind of trouble: one that Plain writes.
std::string User(const std::string& name, const std::string& more = "") {
    return "[USER]\r\nName: " + name + "\r\nFullname: \r\nUsername: \r\nNetware: \r\nLanManager: \r\n" + more;
}
std::string Group(const std::string& name, const std::string& more = "") {
    return "[GROUP]\r\nName: " + name + "\r\nFullname: \r\n" + more;
}

const std::string kOdd = "; \t\x01\x7f \n" + std::string(1000, 'x') + "\r\n\xff\n\n";
const std::string kHead = "[BRIVANE]\nType: UserList \t\n" + kOdd;
const std::string kDefault = "[USER]\r\nName: (default)\r\nFullname: Def\r\nAdmin: YES\r\nCostCentre: 1\t\n; note\n\n";

enum class Act { Add, Update, Delete };

struct Case {
    Act What;
    RecordKind Kind;
    std::string Name;
    std::string Before;
    std::string After;
};

constexpr RecordKind kUser = RecordKind::User;
constexpr RecordKind kGroup = RecordKind::Group;

const Case kCases[] = {
    // added before the first greater name, else at the end
    {Act::Add, kUser, "B", kHead + User("C") + kOdd, kHead + User("B") + "\r\n" + User("C") + kOdd},
    {Act::Add, kUser, "D", kHead + User("C") + kOdd, kHead + User("C") + kOdd + "\r\n" + User("D")},
    {Act::Add, kUser, "C", User("C", "X: 1\r\n") + User("D"), User("C", "X: 1\r\n") + User("C") + "\r\n" + User("D")},
    {Act::Add, kUser, "B", User("A") + User("C") + User("B"), User("A") + User("B") + "\r\n" + User("C") + User("B")},
    {Act::Add, kUser, "a", User("B") + User("\xe4"), User("B") + User("a") + "\r\n" + User("\xe4")},
    {Act::Add, kUser, "B", Group("C") + User("A"), Group("C") + User("A") + "\r\n" + User("B")},
    {Act::Add, kGroup, "B", User("C") + Group("D"), User("C") + Group("B") + "\r\n" + Group("D")},
    {Act::Add, kUser, "B", "[user] x\nNAME=C\n[USER]\nName:  C\tD \n",
     "[user] x\nNAME=C\n" + User("B") + "\r\n[USER]\nName:  C\tD \n"},
    {Act::Add, kUser, "B", "", "\r\n" + User("B")},
    {Act::Add, kUser, "B", "[BRIVANE]\r\nType: x", "[BRIVANE]\r\nType: x\r\n\r\n" + User("B")},
    // what is in the default record and in no key goes along
    {Act::Add, kUser, "B", kDefault + User("C"),
     kDefault + User("B", "CostCentre: 1\r\n; note\r\n\r\n") + "\r\n" + User("C")},
    {Act::Add, kUser, "B", User("A") + kDefault,
     User("A") + kDefault + "\r\n" + User("B", "CostCentre: 1\r\n; note\r\n\r\n")},
    {Act::Add, kGroup, "B", kDefault, kDefault + "\r\n" + Group("B")},
    {Act::Add, kGroup, "B", "[GROUP]\nName: (g\nUsername: u\nX: 1",
     "[GROUP]\nName: (g\nUsername: u\nX: 1\r\n\r\n" + Group("B", "X: 1\r\n")},
    // updated in place
    {Act::Update, kUser, "b", kHead + User("A") + "[user] two \nname: B\nDial: Local\nX: \x01 1\n\n" + Group("B"),
     kHead + User("A") + "[user] two \n" + User("b", "X:   1\r\n\r\n").substr(8) + Group("B")},
    {Act::Update, kUser, "B", User("A") + "[USER]\nName: B\nX: 1",
     User("A") + "[USER]\n" + User("B", "X: 1\r\n").substr(8)},
    {Act::Update, kUser, "B", User("B", "One: 1\r\n") + User("b", "Two: 2\r\n"),
     User("B", "One: 1\r\n") + User("b", "Two: 2\r\n")},
    {Act::Update, kGroup, "B", Group("B", "Username: u\r\nPrintSentBin: x\r\nX: 1\r\n"), Group("B", "X: 1\r\n")},
    {Act::Update, kUser, "(default)", kDefault,
     "[USER]\r\n" + User("(default)", "CostCentre: 1\r\n; note\r\n\r\n").substr(8)},
    // deleted to the next paragraph
    {Act::Delete, kUser, "b", kHead + "\r\n" + User("B", "\r\n") + User("C"), kHead + "\r\n" + User("C")},
    {Act::Delete, kUser, "B", kHead + Group("B") + User("B", kOdd), kHead + Group("B")},
    {Act::Delete, kUser, "B", User("BB") + User("B") + User("B", "X: 1\r\n"), User("BB") + User("B", "X: 1\r\n")},
    {Act::Delete, kGroup, "B", User("B") + Group("B"), User("B")},
};

bool Do(Act act, const std::string& name, const UserRecord& record, RecordKind kind) {
    if (act == Act::Delete) return DeleteUserRecord(name, kind);
    return act == Act::Add ? AddUserRecord(name, record, kind) : UpdateUserRecord(name, record, kind);
}

TEST(UserRewrite, ChangesOneRecordAndKeepsTheRestByteForByte) {
    for (const auto& [act, kind, name, before, after] : kCases) {
        MemoryServer server;
        server.Load();
        server.Put(kPath, before);
        EXPECT_TRUE(Do(act, name, Plain(), kind));
        EXPECT_EQ(server.Get(kPath), after);
        EXPECT_EQ(server.Get(kTemporary), "(none)");
        if (act != Act::Delete) {
            EXPECT_THAT(server.Front.Said, IsEmpty());
        } else {
            const std::string user = kind == kUser ? "user " : "user group ";
            EXPECT_THAT(server.Front.Said, ElementsAre("status 1: Brivane " + user + name + " deleted"));
        }
    }
}

TEST(UserRewrite, SaysWhyItRefuses) {
    MemoryServer server;
    server.Load();
    const std::string notOpened = "error: Unable to open file " + kPath;
    for (const Act act : {Act::Add, Act::Update, Act::Delete}) {
        EXPECT_FALSE(Do(act, "A", Plain(), kUser));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(notOpened));
    }
    server.Put(kPath, kDefault + User("AB"));
    for (const Act act : {Act::Update, Act::Delete}) {
        EXPECT_FALSE(Do(act, "A", Plain(), kUser));
        EXPECT_FALSE(Do(act, "AB", Plain(), kGroup));
        EXPECT_THAT(server.Front.TakeSaid(),
                    ElementsAre("error: Brivane user A not found", "error: Brivane usergroup AB not found"));
    }
    EXPECT_FALSE(DeleteUserRecord("(default)", kUser));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Not allowed to delete default user (default)"));
    {
        server.Put(kTemporary, "");
        const ControlStream held = OpenShared(kTemporary, "rb");
        EXPECT_FALSE(AddUserRecord("A", Plain(), kUser));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to create file " + kTemporary));
    }
    const NamedRecord updates[] = {{"AB", Plain("new")}, {"B", Plain()}};
    EXPECT_FALSE(ChangeUserRecords({{}, updates}, kUser));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Brivane user B not found"));
    EXPECT_EQ(server.Get(kPath), kDefault + User("AB"));
}

std::string AnyName(std::mt19937& random) {
    static const std::string letters = "aBc(\xe9";
    std::string name;
    do {
        name += letters[random() % letters.size()];
    } while (random() % 3 != 0);
    return name;
}

std::string AnyList(std::mt19937& random) {
    std::string text;
    for (auto count = random() % 8; count != 0; --count) {
        const std::string name = AnyName(random);
        const std::string more = random() % 2 != 0 ? "X: " + name + "\r\n" : random() % 2 != 0 ? kOdd : "\r\n";
        text += random() % 4 != 0 ? User(name, more) : random() % 2 != 0 ? Group(name, more) : "; " + name + "\n";
    }
    // An empty line behind a default record at the end would count for the next one that is added.
    return text + User("c") + (random() % 4 == 0 ? "no end" : "");
}

std::string Put(const std::string& list, const std::function<bool()>& change) {
    MemoryServer server;
    server.Load();
    server.Put(kPath, list);
    EXPECT_TRUE(change());
    return server.Get(kPath);
}

TEST(UserRewrite, OfManyRecordsIsAsOneByOne) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        std::mt19937 random(seed);
        const std::string before = AnyList(random);
        std::vector<NamedRecord> added, updated;
        for (auto count = random() % 5; count != 0; --count) added.push_back({AnyName(random), Plain("new")});
        // A default record that is added counts for those after it only when they come one by one.
        std::erase_if(added, [](const NamedRecord& one) { return IsDefaultName(one.Name); });
        const auto mayUpdate = [&](const StoredRecord& user) {
            const auto isIt = [&](const NamedRecord& one) { return EqualFolded(one.Name, user.Name); };
            const bool isNew = std::ranges::none_of(updated, isIt);
            if (isNew && random() % 2 != 0) updated.push_back({user.Name, Plain("changed")});
            return true;
        };
        Put(before, [&] { return VisitUserRecords(kUser, mayUpdate); });
        const std::string atOnce = Put(before, [&] { return ChangeUserRecords({added, updated}, kUser); });
        const std::string oneByOne = Put(before, [&] {
            for (const auto& [name, record] : updated) EXPECT_TRUE(UpdateUserRecord(name, record, kUser));
            for (const auto& [name, record] : added) EXPECT_TRUE(AddUserRecord(name, record, kUser));
            return true;
        });
        ASSERT_EQ(atOnce, oneByOne) << "seed " << seed << "\n" << before;
    }
}

} // namespace
} // namespace bv
