// The user list as the users' dialogs and verbs use it, against a copy of the same file.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "baselines.h"
#include "sample_files.h"
#include "shell/row_order.h"
#include "sizes.h"
#include "users/user_list.h"
#include "users/user_rewrite.h"
#include "users/user_rows.h"
#include "voice/list_target.h"

namespace bv::bench {
namespace {

constexpr RecordKind kUser = RecordKind::User;
constexpr std::size_t kImported = 1000;

class TextList : public ListTarget {
  public:
    void Clear() override { Text.clear(); }
    void Add(const std::string& entry) override { Text.append(entry).append("\n"); }
    [[nodiscard]] bool Contains(const std::string&) const override { return false; }
    [[nodiscard]] bool IsComboBox() const override { return false; }

    std::string Text;
};

UserRecord ReadRecord(const std::string& name) {
    UserRecord record;
    if (!ReadUserRecord(name, record, kUser)) std::abort();
    return record;
}

void Add(const std::string& name, const UserRecord& record) {
    if (!AddUserRecord(name, record, kUser)) std::abort();
}

void Delete(const std::string& name) {
    if (!DeleteUserRecord(name, kUser)) std::abort();
}

void CopyUsers(benchmark::State& state) {
    const SampleServer& server = UseServer(Size(state));
    for (auto _ : state) Copy(server.Users.HostPath);
}

// What the users' dialog does: all rows, then a character in its filter, then another column's order.
void ReadRows(benchmark::State& state) {
    UseServer(Size(state));
    for (auto _ : state) {
        RowTable rows;
        if (!ReadUserRows(UserListKind::Users, rows) || rows.Count() != Size(state)) std::abort();
        RowOrder order(rows);
        order.Sort(RowOrder::SortBy{kUserName, true});
    }
}

struct ReadList {
    explicit ReadList(std::size_t size) {
        UseServer(size);
        if (!ReadUserRows(UserListKind::Users, Rows)) std::abort();
        Order.Reset();
    }
    RowTable Rows;
    RowOrder Order{Rows};
};

void FilterRows(benchmark::State& state) {
    ReadList list(Size(state));
    for (auto _ : state) {
        list.Order.Filter("7");
        list.Order.Filter("");
    }
}

void SortRows(benchmark::State& state) {
    ReadList list(Size(state));
    for (auto _ : state) list.Order.Sort(RowOrder::SortBy{kUserFullname, true});
}

void ListUsers(benchmark::State& state) {
    UseServer(Size(state));
    UserListView view;
    view.Format = UserListFormat::NameAndFullname;
    view.WithGroup = true;
    for (auto _ : state) {
        TextList list;
        if (!FillUserList(list, nullptr, view) || list.Text.empty()) std::abort();
    }
}

void ReadLateUser(benchmark::State& state) {
    UseServer(Size(state));
    const std::string name = RecordName(Size(state) - 1);
    for (auto _ : state) benchmark::DoNotOptimize(ReadRecord(name));
}

// Adding and deleting take turns, so that the list stays as it is; only one of them is timed.
void AddUser(benchmark::State& state) {
    UseServer(Size(state));
    const UserRecord record = ReadRecord(RecordName(0));
    const std::string name = NewName(Size(state) / 2);
    for (auto _ : state) {
        Add(name, record);
        state.PauseTiming();
        Delete(name);
        state.ResumeTiming();
    }
}

void DeleteUser(benchmark::State& state) {
    UseServer(Size(state));
    const UserRecord record = ReadRecord(RecordName(0));
    const std::string name = NewName(Size(state) / 2);
    for (auto _ : state) {
        state.PauseTiming();
        Add(name, record);
        state.ResumeTiming();
        Delete(name);
    }
}

// The two values differ in length, so that everything behind them moves.
void UpdateUser(benchmark::State& state) {
    UseServer(Size(state));
    const std::string name = RecordName(Size(state) / 2);
    UserRecord record = ReadRecord(name);
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        record.Fullname = flip ? "Reception" : "Reception desk";
        if (!UpdateUserRecord(name, record, kUser)) std::abort();
    }
}

// New users all over the list, in one rewrite.
void ImportUsers(benchmark::State& state) {
    const std::string list = UseServer(Size(state)).Users.HostPath;
    const std::string before = list + ".before";
    std::filesystem::copy_file(list, before);
    const UserRecord record = ReadRecord(RecordName(0));
    std::vector<NamedRecord> added;
    for (std::size_t n = 0; n < kImported; ++n) added.push_back({NewName(n * (Size(state) / kImported)), record});
    for (auto _ : state) {
        if (!ChangeUserRecords({added, {}}, kUser)) std::abort();
        state.PauseTiming();
        std::filesystem::copy_file(before, list, std::filesystem::copy_options::overwrite_existing);
        state.ResumeTiming();
    }
    std::filesystem::remove(before);
}

#define LIST_SIZES Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond)
BENCHMARK(CopyUsers)->LIST_SIZES;
BENCHMARK(ListUsers)->LIST_SIZES;
BENCHMARK(ReadRows)->LIST_SIZES;
BENCHMARK(FilterRows)->LIST_SIZES;
BENCHMARK(SortRows)->LIST_SIZES;
BENCHMARK(ReadLateUser)->LIST_SIZES;
BENCHMARK(AddUser)->LIST_SIZES;
BENCHMARK(UpdateUser)->LIST_SIZES;
BENCHMARK(DeleteUser)->LIST_SIZES;
BENCHMARK(ImportUsers)->LIST_SIZES;

} // namespace
} // namespace bv::bench
