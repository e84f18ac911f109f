// Routing on a large server: 300 countries, 5,000 areas, 20,000 users; and its mail users.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "baselines.h"
#include "lcr/dead_rules.h"
#include "lcr/destination_session.h"
#include "lcr/number_place.h"
#include "lcr/place_filter.h"
#include "lcr/rule_file.h"
#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "lcr/rule_rows.h"
#include "lcr/rule_session.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_actions.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_user_rows.h"
#include "routing/inward_rules.h"
#include "sample_files.h"
#include "sizes.h"
#include "voice/format.h"

namespace bv::bench {
namespace {

constexpr std::size_t kUsers = 20000;
constexpr int kCountries = 300;
constexpr int kAreasOfEach = 50; // of every third country

std::filesystem::path DatabaseDirectory() {
    return std::filesystem::path(UseServer(kUsers).Users.HostPath).parent_path();
}

void Put(const std::string& name, const std::string& text) {
    std::ofstream(DatabaseDirectory() / name, std::ios::binary) << text;
}

std::string Header(const std::string& type) { return "[BRIVANE]\r\nType: " + type + "\r\nRevision: A\r\n\r\n"; }

void PutPlaces() {
    std::string countries = Header("Country") + "[COUNTRIES]\r\n";
    for (int n = 0; n < kCountries; ++n) {
        countries += FormatText("%d: C%03d, \"Country %d\", 1\r\n", 100 + n, n, n);
        if (n % 3 != 0) continue;
        std::string areas = Header("Area") + "[AREAS]\r\n";
        for (int area = 0; area < kAreasOfEach; ++area)
            areas += FormatText("Area: A%d, \"Area %d\"\r\nMatch: %d*\r\n", area, area, area);
        Put(FormatText("Area%d.ini", 100 + n), areas);
    }
    Put("COUNTRY.INI", countries);
    Put("REGION.INI", Header("Region") + "[REGIONS]\r\nRegion: ALL, \"All\"\r\nMatch: C000\r\nMatch: C003/A1\r\n");
    Put("LINK.INI", Header("LinkDatabase") + "[LINK]\r\nRemoteServerID: FAR, \"Far\"\r\nLinkType: WAN\r\n");
}

void PutRules(std::size_t count) {
    std::string rules = Header("LCRRules");
    for (std::size_t n = 0; n < count; ++n) {
        rules += FormatText("[RULE]\r\nDescription: Rule %d\r\nCountry: C%03d\r\nArea: C%03d/A%d\r\n", n, n % 300,
                            n % 100 * 3, n % 50);
        rules +=
            FormatText("User: %s\r\nTime: AFTER 18:00 BEFORE 08:00 MON FRI\r\nSize: PAGES GE 2\r\nServer: FAR\r\n\r\n",
                       RecordName(n % kUsers));
    }
    Put("LCRRules.ini", rules);
}

// Every file that loading reads, once.
void ReadFiles(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    for (auto _ : state) {
        for (const auto& entry : std::filesystem::directory_iterator(DatabaseDirectory()))
            benchmark::DoNotOptimize(LineScan(entry.path()));
    }
}

RuleList Load(RuleNames& names) {
    std::optional<RuleList> rules = ReadRules();
    if (!rules || rules->empty() || !LoadRuleNames(names) || !CheckReferences(*rules, names).empty()) std::abort();
    return std::move(*rules);
}

void LoadAndCheckRules(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    for (auto _ : state) {
        RuleNames names;
        benchmark::DoNotOptimize(Load(names));
    }
}

void SaveAllRules(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleNames names;
    const RuleList rules = Load(names);
    for (auto _ : state) {
        if (!SaveRules(rules, StampOf({}))) std::abort();
    }
}

void MatchAllRules(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleNames names;
    const RuleList rules = Load(names);
    const MatchBasis basis = {names.Places, {}, {}};
    const RuleFilter filters[] = {{.Kind = Criterion::Destination, .IsActive = true, .Destination = "C003/A1"},
                                  {.Kind = Criterion::User, .IsActive = true, .User = RecordName(7)},
                                  {.Kind = Criterion::Size, .IsActive = true, .Pages = 3}};
    for (auto _ : state) {
        for (const RoutingRule& rule : rules) {
            for (const RuleFilter& filter : filters) benchmark::DoNotOptimize(RuleMatches(rule, filter, basis));
        }
    }
}

void FindAllDeadRules(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleNames names;
    const RuleList rules = Load(names);
    for (auto _ : state) benchmark::DoNotOptimize(FindDeadRules(rules, names.Places, {}));
}

// The list of rules as its dialog has it: opened, and the rows of a window of it made.
void OpenRuleSession(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    for (auto _ : state) {
        RuleSession session;
        if (!session.Open() || session.IsChanged()) std::abort();
        const RuleRows rows(session, {});
        for (std::size_t row = 0; row < 30; ++row) benchmark::DoNotOptimize(rows.Text(row, kRuleCriteria));
    }
}

void WritePendingRules(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleSession session;
    if (!session.Open()) std::abort();
    for (auto _ : state) benchmark::DoNotOptimize(KeepRulesPending(session.Rules()));
    RuleSession::Abandon();
}

// The last rule to the top, with the pending file's write.
void MoveOneRule(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleSession session;
    if (!session.Open()) std::abort();
    RuleRows rows(session, {});
    for (auto _ : state) {
        if (!session.Move(Size(state) - 1, 0)) std::abort();
        rows.Refresh();
        for (std::size_t row = 0; row < 30; ++row) benchmark::DoNotOptimize(rows.Text(row, kRuleCriteria));
    }
    RuleSession::Abandon();
}

// A fax that no rule takes.
void TryOneFax(benchmark::State& state) {
    PutPlaces();
    PutRules(Size(state));
    RuleSession session;
    if (!session.Open()) std::abort();
    const RuleRows rows(session, {2026, 6, 10, 12, 0, 0, 3, true});
    const FilterEntry fax = {{Criterion::Destination, Criterion::User, Criterion::Size, Criterion::Time},
                             {"+1031", RecordName(7), {}, {}, "1"},
                             3,
                             "20:00"};
    for (auto _ : state) {
        const TriedFax tried = TryFax(fax, session.Rules(), session.Names(), rows.Basis());
        if (tried.Filters.empty() || tried.Deciding) std::abort();
    }
}

// What the dialog of the destinations does before it is shown; as many areas in each of 200 countries.
void PutManyPlaces(std::size_t areasOfEach) {
    std::string areas = Header("Area") + "[AREAS]\r\n";
    for (std::size_t n = 0; n < areasOfEach; ++n)
        areas += FormatText("Area: A%d, \"Area number %d\"\r\nMatch: %d*\r\n", n, n, 10000 + n);
    std::string countries = Header("Country") + "[COUNTRIES]\r\n";
    for (int n = 0; n < 200; ++n) {
        countries += FormatText("%d: C%03d, \"Country %d\", 1\r\n", 100 + n, n, n);
        Put(FormatText("Area%d.ini", 100 + n), areas);
    }
    Put("COUNTRY.INI", countries);
}

void OpenDestinations(benchmark::State& state) {
    PutPlaces();
    PutManyPlaces(Size(state));
    for (auto _ : state) {
        DestinationSession session;
        if (!session.Begin()) std::abort();
        benchmark::DoNotOptimize(FilterPlaces(session.Places(), session.Synonyms(), ""));
        session.Drop();
    }
}

void LookUpNumber(benchmark::State& state) {
    PutPlaces();
    PutManyPlaces(Size(state));
    Destinations places;
    if (!LoadDestinations(places)) std::abort();
    for (auto _ : state)
        if (!PlaceOfNumber(places, "+100 10001 123456")) std::abort();
}

// As many inward rules of each kind; of the senders' two to a record.
void PutInwardRules(std::size_t count) {
    std::string senders = "[SENDERID]\r\n";
    std::string numbers = "[SUBADDR]\r\n";
    std::string forwards = "[FORWARD]\r\n";
    for (std::size_t n = 0; n < count; ++n) {
        const std::string user = RecordName(n % kUsers);
        if (n % 2 == 0) senders += FormatText("@44%08d: \"+44 %08d\" \"Firm %d\"\r\n", n, n, n);
        senders += RecordName((n + 1) % kUsers) + ": " + user + "\r\n";
        numbers += FormatText("%d: %s\r\n", n, user);
        forwards += user + ": \"\" LAN-ANY \"" + RecordName((n + 2) % kUsers) + "\"\r\n";
    }
    Put("ROUTING.INI", Header("RoutingInit") + senders + "\r\n" + numbers + "\r\n" + forwards + "\r\n");
}

// The dialog as it is opened, and once with the rows of each kind.
void OpenInwardRouting(benchmark::State& state) {
    PutPlaces();
    PutInwardRules(Size(state));
    for (auto _ : state) {
        InwardRules rules;
        NameSet names;
        if (!ReadInwardRules(rules) || !ReadRoutingNames(names)) std::abort();
        InwardRows rows;
        for (const RoutingKind kind : {RoutingKind::Sender, RoutingKind::SubAddress, RoutingKind::Forward}) {
            rows.Fill(kind, rules, &names);
            if (rows.Count() != Size(state)) std::abort();
        }
    }
}

void PutMailUsers(std::size_t count) {
    std::string list = "; mail users\r\n";
    std::string people;
    for (std::size_t n = 0; n < count; ++n) {
        list += FormatText("\r\n[USER]\r\nBrivname: %s\r\nEmailname: Person %06d\r\nProfile: NO\r\n",
                           RecordName(n % kUsers), n);
        people += FormatText("Person %06d\tperson%06d@example.com\r\n", n, n);
    }
    Put("MAILLIST.INI", list);
    Put("MAILUSER.DAT", people);
}

// The list as its dialog has it, with the users of the server and of the mail system beside it.
void OpenMailUsers(benchmark::State& state) {
    PutPlaces();
    PutMailUsers(Size(state));
    for (auto _ : state) {
        MailUserRows rows;
        if (!rows.Read()) std::abort();
        rows.Show(MailUserShow::All, "");
        if (rows.Count() != Size(state)) std::abort();
    }
}

void ListMailUsers(benchmark::State& state) {
    PutMailUsers(Size(state));
    for (auto _ : state) {
        std::size_t count = 0;
        const auto visit = [&count](const MailUser&) { return ++count != 0; };
        if (!VisitMailUsers(visit) || count != Size(state)) std::abort();
    }
}

// A character of the filter that most rows have.
void FilterMailUsers(benchmark::State& state) {
    PutPlaces();
    PutMailUsers(Size(state));
    MailUserRows rows;
    if (!rows.Read()) std::abort();
    RowOrder order(rows);
    for (auto _ : state) {
        order.Filter("");
        order.Filter("7");
        if (order.Shown() == 0 || order.Shown() == Size(state)) std::abort();
    }
}

// The account names of all users of the mail system, and which of them clash, as for each character of an expression.
void MakeAccountNames(benchmark::State& state) {
    std::vector<std::string> people;
    for (std::size_t n = 0; n < Size(state); ++n) people.push_back(FormatText("Person%06d John", n));
    for (auto _ : state) {
        std::vector<std::string> accounts;
        AccountName account;
        for (const std::string& person : people) {
            MakeMailAccountName(person, "%1First%Last", account);
            accounts.push_back(account.String());
        }
        if (ClashingAccountNames(accounts, {}).size() != Size(state)) std::abort();
    }
}

// The users of the mail system as the box has them that enables them, by a profile.
void OpenMailPeople(benchmark::State& state) {
    PutPlaces();
    PutMailUsers(Size(state));
    for (auto _ : state) {
        MailPeople people;
        people.GiveAccounts(true, kDefaultAccountExpression);
        if (!people.Read() || people.Count() != Size(state)) std::abort();
    }
}

void TypeMailAccount(benchmark::State& state) {
    PutPlaces();
    PutMailUsers(Size(state));
    Put("MAILLIST.INI", "");
    MailPeople people;
    people.GiveAccounts(true, kDefaultAccountExpression);
    if (!people.Read()) std::abort();
    for (auto _ : state) people.SetAccount(0, "Somebody");
}

// A thousand users of the mail system let in among so many, in one rewrite.
void EnableThousand(benchmark::State& state) {
    PutPlaces();
    std::vector<NewMailUser> users;
    for (int n = 0; n < 1000; ++n) users.push_back({FormatText("Newcomer %04d", n), ""});
    for (auto _ : state) {
        state.PauseTiming();
        PutMailUsers(Size(state));
        state.ResumeTiming();
        if (EnableMailUsers(RecordName(7), users)) std::abort();
    }
}

#define RULE_SIZES Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)
BENCHMARK(ReadFiles)->RULE_SIZES;
BENCHMARK(LoadAndCheckRules)->RULE_SIZES;
BENCHMARK(SaveAllRules)->RULE_SIZES;
BENCHMARK(MatchAllRules)->RULE_SIZES;
BENCHMARK(FindAllDeadRules)->RULE_SIZES;
BENCHMARK(OpenRuleSession)->RULE_SIZES;
BENCHMARK(WritePendingRules)->RULE_SIZES;
BENCHMARK(MoveOneRule)->RULE_SIZES;
BENCHMARK(TryOneFax)->RULE_SIZES;
BENCHMARK(OpenDestinations)->Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpNumber)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenInwardRouting)->RULE_SIZES;
BENCHMARK(OpenMailUsers)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ListMailUsers)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenMailPeople)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(TypeMailAccount)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(EnableThousand)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(FilterMailUsers)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeAccountNames)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace bv::bench
