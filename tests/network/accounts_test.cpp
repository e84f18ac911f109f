// Reading accounts through a library that pages, refuses, fails half-way and lies.
#include <gtest/gtest.h>

#include "network/scene.h"
#include "platform/network_users.h"

namespace bv::test {
namespace {

template <class Call>
Call EntryOf(const char* name) {
    static const HMODULE module = LoadLibraryA("NETAPI32.DLL");
    return reinterpret_cast<Call>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

std::string Number(std::size_t number) {
    const std::string digits = "000" + std::to_string(number);
    return digits.substr(digits.size() - 4);
}

struct Case {
    const char* Name;
    Scene Played;
    std::size_t Read;
    unsigned long Error;
};

const Case kCases[] = {
    {"three pages", {.Users = 250}, 250, 0},
    {"nobody", {.Users = 0}, 0, 0},
    {"by accounts, which resume", {.Users = 250, .QueryError = ERROR_NOT_SUPPORTED}, 250, 0},
    {"by names alone", {.Users = 250, .QueryError = 5, .Level20Error = ERROR_INVALID_LEVEL}, 250, 0},
    {"refused", {.Users = 250, .QueryError = 5, .Level20Error = 5, .FailsAfter = 1}, 70, 5},
    {"half-way", {.Users = 250, .FailsAfter = 150}, 200, 5},
    {"a count that lies", {.Users = 250, .LiesBy = 100000}, 100, ERROR_INVALID_DATA},
    {"a place that stays", {.Users = 250, .StaysInPlace = true}, 100, ERROR_INVALID_DATA},
    {"a resume handle that stays", {.Users = 250, .QueryError = 50, .StaysInPlace = true}, 70, ERROR_INVALID_DATA},
    {"a name that lies nowhere", {.Users = 250, .BadNames = true}, 4, ERROR_INVALID_DATA},
};

TEST(NetworkAccounts, AreReadAsFarAsTheLibraryCanBeBelieved) {
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.Name);
        EntryOf<void (*)(const Scene*)>("ScenePlayed")(&one.Played);
        std::vector<platform::NetworkUser> users;
        const auto visit = [&](std::span<const platform::NetworkUser> page) {
            users.insert(users.end(), page.begin(), page.end());
            return true;
        };
        const platform::NetworkReading reading = platform::TheNetworkUsers().Read("\\\\DC1", visit);
        EXPECT_EQ(reading.Error, one.Error) << reading.Fault;
        EXPECT_EQ(reading.Fault.empty(), one.Error == 0);
        EXPECT_EQ(users.size(), one.Read);
        EXPECT_EQ(EntryOf<int (*)()>("BuffersKept")(), 0);
        for (std::size_t i = 0; i < users.size(); ++i) {
            const bool isCyrillic = i == 2;
            EXPECT_EQ(users[i].IsWhole, !isCyrillic);
            EXPECT_EQ(users[i].Name.substr(isCyrillic ? 1 : 4), Number(i + 1));
        }
    }
}

TEST(NetworkAccounts, StopWhenTheyAreTold) {
    const Scene scene{.Users = 250};
    EntryOf<void (*)(const Scene*)>("ScenePlayed")(&scene);
    std::size_t pages = 0;
    const auto stop = [&](std::span<const platform::NetworkUser> page) {
        ++pages;
        EXPECT_TRUE(page[9].IsDisabled);
        EXPECT_EQ(page[0].Fullname, "User number 1");
        return false;
    };
    EXPECT_EQ(platform::TheNetworkUsers().Read("", stop).Error, 0u);
    EXPECT_EQ(pages, 1u);
}

TEST(NetworkAccounts, HaveADomainWhereThereIsOne) {
    for (const bool hasNone : {false, true}) {
        const Scene scene{.HasNoDomain = hasNone};
        EntryOf<void (*)(const Scene*)>("ScenePlayed")(&scene);
        const std::vector<platform::NetworkDomain> domains = platform::TheNetworkUsers().Domains();
        ASSERT_EQ(domains.size(), hasNone ? 0u : 1u);
        if (hasNone) continue;
        EXPECT_EQ(domains[0].Name + domains[0].Controller, "QUILLNET\\\\DC1");
    }
}

} // namespace
} // namespace bv::test
