// Adding, changing and deleting users whole.
#include "users/user_actions.h"

#include <gmock/gmock.h>

#include "shell/startup.h"
#include "support/memory_server.h"
#include "users/user_list.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr RecordKind kUser = RecordKind::User;
constexpr RecordKind kGroup = RecordKind::Group;
const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kList = "[GROUP]\r\nName: @A\r\n[USER]\r\nName: ANN\r\nMailName: a@b\r\n";

class UserActions : public testing::Test {
  protected:
    UserActions() {
        server_.Load();
        server_.Put(kPath, kList);
        server_.Put("F:\\BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\nFrom:\r\n");
        Startup().SettingsChanged = false;
        SetMailListHook([this](std::span<const UserChange> changes) {
            for (const UserChange& change : changes) told_.push_back(Told(change));
            return mailListWorks_;
        });
    }
    ~UserActions() override {
        SetMailListHook({});
        Startup() = {};
    }

    std::string Told(const UserChange& change) {
        const auto mailName = [](const UserRecord* record) { return record ? record->MailName.String() : "none"; };
        const bool isListed = server_.Get(kPath).find("Name: " + std::string(change.Name)) != std::string::npos;
        return std::string(change.Name) + ": " + mailName(change.Before) + " -> " + mailName(change.After) +
               (isListed ? ", listed" : "");
    }
    std::string LastSaid() { return server_.Front.TakeSaid().back(); }
    bool HasDirectory(const std::string& name) { return server_.Files.Find("F:\\BRIVANE\\USERS\\" + name).has_value(); }
    std::string From(const std::string& name) {
        return server_.Get("F:\\BRIVANE\\USERS\\" + name + "\\B-DB\\USER.INI").substr(11);
    }

    static UserRecord Read(std::string_view name, RecordKind kind) {
        UserRecord record;
        EXPECT_TRUE(ReadUserRecord(name, record, kind));
        return record;
    }
    static UserRecord Mailed(std::string_view mailName) {
        UserRecord record;
        record.Fullname = "Full";
        record.MailName = mailName;
        return record;
    }

    MemoryServer server_;
    std::vector<std::string> told_;
    bool mailListWorks_ = true;
};

TEST_F(UserActions, AddGoesFromTheDirectoriesToTheMailList) {
    EXPECT_TRUE(AddUser("IRIS", Mailed("i@b"), kUser));
    EXPECT_EQ(LastSaid(), "status 1: Added user IRIS");
    EXPECT_TRUE(HasDirectory("IRIS\\B-GRAPH"));
    EXPECT_EQ(From("IRIS"), "From: Full\r\n");
    EXPECT_TRUE(AddUser("@B", {}, kGroup));
    EXPECT_EQ(LastSaid(), "status 1: Added user group @B");
    EXPECT_FALSE(HasDirectory("@B\\B-GRAPH"));
    EXPECT_TRUE(AddUser("MAIL", Mailed("*"), kUser));
    EXPECT_EQ(From("MAIL"), "From: \r\n");
    EXPECT_THAT(told_, ElementsAre("IRIS: none -> i@b, listed", "MAIL: none -> *, listed"));
    EXPECT_TRUE(Startup().SettingsChanged);
}

TEST_F(UserActions, AddStopsWhereItFails) {
    server_.Put("F:\\BRIVANE\\USERS\\IRIS", "a file in the way");
    EXPECT_FALSE(AddUser("IRIS", Mailed("i@b"), kUser));
    EXPECT_THAT(server_.Front.TakeSaid(),
                testing::IsSupersetOf({"error: Unable to create directory F:\\BRIVANE\\USERS\\IRIS - access error",
                                       "status 1: Unable to add user IRIS"}));
    EXPECT_EQ(server_.Get(kPath), kList);
    {
        const ControlStream held = OpenShared(kPath, "rb");
        EXPECT_FALSE(AddUser("@B", {}, kGroup));
        EXPECT_EQ(LastSaid(), "status 1: Unable to add user group @B");
    }
    EXPECT_THAT(told_, IsEmpty());
    EXPECT_FALSE(Startup().SettingsChanged);

    mailListWorks_ = false;
    EXPECT_FALSE(AddUser("JOHN", Mailed("j@b"), kUser));
    EXPECT_EQ(LastSaid(), "status 1: Unable to add user JOHN");
    EXPECT_TRUE(Startup().SettingsChanged) << "the user list has changed";
}

TEST_F(UserActions, UpdateWritesOnlyWhatHasChanged) {
    const UserRecord ann = Read("ANN", kUser);
    EXPECT_TRUE(UpdateUser("ANN", ann, ann, kUser));
    EXPECT_EQ(server_.Get(kPath), kList);
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
    EXPECT_FALSE(Startup().SettingsChanged);
    EXPECT_FALSE(UpdateUser("BOB", {}, Mailed("a@b"), kUser));
    EXPECT_EQ(LastSaid(), "error: Brivane user BOB not found");
    EXPECT_FALSE(Startup().SettingsChanged);
    EXPECT_TRUE(UpdateUser("ANN", ann, {}, kUser));
    EXPECT_EQ(LastSaid(), "status 1: Modified user ANN");
    EXPECT_TRUE(UpdateUser("@A", Read("@A", kGroup), Mailed(""), kGroup));
    EXPECT_EQ(LastSaid(), "status 1: Modified user group @A");
    EXPECT_THAT(told_, ElementsAre("ANN: a@b -> , listed"));
    EXPECT_TRUE(Startup().SettingsChanged);
}

// Two people look at the list, and then both write.
TEST_F(UserActions, WhatSomebodyElseHasDoneMeanwhileStays) {
    const UserRecord seen = Read("ANN", kUser);
    UserRecord theirs = seen;
    theirs.Fullname = "Theirs";
    EXPECT_TRUE(UpdateUser("ANN", seen, theirs, kUser) && AddUser("IRIS", Mailed(""), kUser));
    const std::string list = server_.Get(kPath);
    UserRecord ours = seen;
    ours.Group = "@A";
    EXPECT_FALSE(UpdateUser("ANN", seen, ours, kUser));
    EXPECT_EQ(LastSaid(), "error: ANN was changed by somebody else meanwhile, and is not overwritten.");
    for (const RecordKind kind : {kUser, kGroup}) {
        EXPECT_FALSE(AddUser("iris", {}, kind));
        EXPECT_THAT(server_.Front.TakeSaid(),
                    testing::Contains("error: Name: \"IRIS\" - there is a user or user group of that name already."));
    }
    EXPECT_EQ(server_.Get(kPath), list);
}

TEST_F(UserActions, DeleteGoesTheOtherWayRound) {
    server_.Put("F:\\BRIVANE\\USERS\\ANN\\B-IN\\A", "x");
    EXPECT_FALSE(DeleteUser("(default)", kUser));
    EXPECT_EQ(LastSaid(), "error: Not allowed to delete default user (default)");
    EXPECT_FALSE(DeleteUser("@B", kGroup));
    EXPECT_EQ(LastSaid(), "error: Brivane usergroup @B not found");
    EXPECT_FALSE(DeleteUser("ann", kUser));
    EXPECT_EQ(LastSaid(), "ask question: Deleting user ANN  \n\nAre you sure?");
    EXPECT_THAT(told_, IsEmpty());
    server_.Front.Answer = true;
    mailListWorks_ = false;
    EXPECT_FALSE(DeleteUser("ANN", kUser));
    EXPECT_EQ(server_.Get(kPath), kList);
    mailListWorks_ = true;
    {
        const ControlStream held = OpenShared(kPath, "rb");
        EXPECT_FALSE(DeleteUser("ANN", kUser));
        EXPECT_EQ(server_.Get("F:\\BRIVANE\\USERS\\ANN\\B-IN\\A"), "x");
    }
    EXPECT_FALSE(Startup().SettingsChanged);
    told_.clear();
    server_.Front.TakeSaid();
    EXPECT_TRUE(DeleteUser("ann", kUser));
    EXPECT_THAT(told_, ElementsAre("ANN: a@b -> none, listed"));
    EXPECT_THAT(server_.Front.TakeSaid(),
                ElementsAre(testing::StartsWith("ask question"), "status 1: Brivane user ANN deleted",
                            "status 1: Deleting directory structure for user ANN"));
    EXPECT_EQ(server_.Get("F:\\BRIVANE\\USERS\\ANN\\B-IN\\A"), "(none)");
    EXPECT_TRUE(Startup().SettingsChanged);
}

TEST_F(UserActions, DeletingAgainFinishesWhatWasLeft) {
    const std::string root = "F:\\BRIVANE\\USERS\\ANN";
    server_.Put(root + "\\B-IN\\A", "x");
    server_.Put(root + "\\B-OUT\\B", "x");
    server_.Front.Answer = true;
    {
        const ControlStream held = OpenShared(root + "\\B-OUT\\B", "rb");
        EXPECT_FALSE(DeleteUser("ann", kUser));
        EXPECT_EQ(LastSaid(), "error: Of the directories of ANN this remains:\n" + root +
                                  "\\B-OUT\\B\nDelete ANN again to remove the rest.");
        EXPECT_EQ(server_.Get(kPath), "[GROUP]\r\nName: @A\r\n");
        EXPECT_FALSE(DeleteUser("ANN", kUser));
    }
    server_.Front.Answer = false;
    EXPECT_FALSE(DeleteUser("ANN", kUser));
    EXPECT_EQ(LastSaid(), "ask question: There is no user ANN, but directories of that name are left.\n\n"
                          "Delete them with their files?");
    server_.Front.Answer = true;
    EXPECT_TRUE(DeleteUser("ann", kUser));
    EXPECT_FALSE(HasDirectory("ANN"));
    EXPECT_FALSE(DeleteUser("ANN", kUser));
    EXPECT_EQ(LastSaid(), "error: Brivane user ANN not found");

    server_.Put("F:\\BRIVANE\\USERS\\@A\\B-IN\\A", "x");
    EXPECT_FALSE(DeleteUser("@A", kUser)) << "the directories of a group that is there";
    EXPECT_EQ(LastSaid(), "error: Brivane user @A not found");
    for (int i = 10; i < 22; ++i) server_.Put("F:\\BRIVANE\\USERS\\@A\\OWN" + std::to_string(i), "x");
    EXPECT_FALSE(DeleteUser("@A", kGroup));
    const std::string said = LastSaid();
    EXPECT_THAT(said, testing::HasSubstr("\\OWN19\nand 2 more\n"));
    EXPECT_EQ(said.find("OWN20"), std::string::npos);
}

TEST_F(UserActions, ManyAtOnceAreWholeUsersWhereverItStops) {
    const NamedRecord added[] = {{"C", Mailed("c")}, {"B", {}}, {"D", {}}};
    const RecordUpdate updated[] = {{"ANN", Read("ANN", kUser), Mailed("new")}};
    const auto names = [] {
        std::string text;
        VisitUserRecords(kUser, [&](const StoredRecord& user) {
            text += user.Name + ":" + user.Record.Fullname.String() + " ";
            return true;
        });
        return text;
    };
    const auto all = [](std::size_t) { return true; };
    SavedUsers saved = SaveUsers(added, updated, kUser, [](std::size_t done) { return done < 2; });
    EXPECT_TRUE(saved.Added == 2 && saved.Updated == 0);
    EXPECT_EQ(names(), "ANN: B: C:Full ");
    EXPECT_THAT(told_, ElementsAre("C: none -> c, listed"));

    server_.Put(kPath, kList);
    told_.clear();
    saved = SaveUsers(added, updated, kUser, all);
    EXPECT_TRUE(saved.Added == 3 && saved.Updated == 1);
    EXPECT_EQ(names(), "ANN:Full B: C:Full D: ");
    EXPECT_THAT(told_, ElementsAre("C: none -> c, listed", "ANN: a@b -> new, listed"));

    const ControlStream held = OpenShared(kPath, "rb");
    saved = SaveUsers(added, updated, kUser, all);
    EXPECT_TRUE(saved.Added == 0 && saved.Updated == 0);
}

TEST_F(UserActions, ANewNameIsFreeAndFitsItsDirectory) {
    UserRecord inGroup;
    inGroup.Group = "@a";
    UserList list;
    EXPECT_TRUE(CheckNewUser(list, "IRIS", inGroup, kUser));
    EXPECT_TRUE(CheckNewUser(list, "@B", {}, kGroup));
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
    const struct {
        const char* Name;
        const char* Why;
        RecordKind Kind = kUser;
    } rows[] = {
        {"", "a name has 1 to 8"},
        {"NINECHARS", "a name has 1 to 8"},
        {"(x)", "only the default user's"},
        {"..", "that of its directory"},
        {"A\\B", "that of its directory"},
        {"A\tB", "that of its directory"},
        {" A", "no file name has a blank at an end"},
        {"A|B", "one of"},
        {"nul", "for devices"},
        {"COM1.X", "for devices"},
        {"ann", "already"},
        {"@a", "already", kGroup},
        {"@C", "the name of a user does not begin with @"},
        {"C", "the name of a user group begins with @.", kGroup},
    };
    for (const auto& [name, why, kind] : rows) {
        EXPECT_FALSE(CheckNewUser(list, name, {}, kind)) << name;
        EXPECT_THAT(LastSaid(), testing::HasSubstr(why)) << name;
    }
    inGroup.Group = "@NONE";
    EXPECT_FALSE(CheckNewUser(list, "IRIS", inGroup, kUser));
    EXPECT_EQ(LastSaid(), "error: Group: \"@NONE\" - there is no user group of that name.");
}

} // namespace
} // namespace bv
