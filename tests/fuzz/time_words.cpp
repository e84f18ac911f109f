// Words of time and the off-peak period, whatever their bytes: the range that they give, and when it next permits.
// Parameters: words of time | an hour | a minute. The rest is SETUP.INI.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "lcr/time_range.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

int NumberIn(std::optional<std::string_view> text) { return std::atoi(std::string(text.value_or("")).c_str()); }

bool TakeNumber(const char*& at, std::int16_t& number) {
    char* end = nullptr;
    number = static_cast<std::int16_t>(std::clamp(std::strtol(at, &end, 10), -32767L, 32767L));
    return std::exchange(at, end) != end;
}

// Two numbers around a colon at the front of a token.
bool TakeClock(const std::string& token, std::int16_t& hour, std::int16_t& minute) {
    const char* at = token.c_str();
    TimeRange found;
    if (!TakeNumber(at, found.FromHour) || *at++ != ':' || !TakeNumber(at, found.FromMinute)) return false;
    hour = found.FromHour;
    minute = found.FromMinute;
    return true;
}

std::optional<TimeRange> Expected(std::string text) {
    TimeRange range{};
    text.erase(0, text.find_first_not_of(' '));
    const auto take = [&text] {
        const model::Token token = model::FirstToken(text);
        text = token.Next ? text.substr(*token.Next) : "";
        return token.Text;
    };
    while (!text.empty()) {
        const std::string token = take();
        const bool isAfter = model::Begins(token, "AFTER");
        if (isAfter && !TakeClock(take(), range.FromHour, range.FromMinute)) return {};
        if (isAfter && range.ToHour == 0 && range.ToMinute == 0) range.ToHour = 24;
        const bool isBefore = model::Begins(token, "BEFORE");
        if (isBefore && !TakeClock(take(), range.ToHour, range.ToMinute)) return {};
        int day = 0;
        for (const char* name : {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"}) {
            if (model::Begins(token, name)) break;
            ++day;
        }
        if (day == 7 && !isAfter && !isBefore) return {};
        if (day < 7) range.Days = static_cast<std::uint16_t>(range.Days | 1U << day);
    }
    return range;
}

// The next moment that words permit is one that they permit. The week begins on Sunday 7 June, far from changes of the
// clocks.
void CheckPermitted(const std::string& words, int hour, int minute) {
    for (int day = 0; day < 7; ++day) {
        const CalendarTime now{2026, 6, 7 + day, hour, minute, 0, day, true};
        const TimeRange range = ParseTimeRange(words).value();
        const std::int64_t next = GetPermittedTime(now, range);
        if (next == kNeverPermitted || !IsValidSendTime(words)) continue;
        Require(next >= FromCalendar(now), "it is not over");
        Require(GetPermittedTime(ToCalendar(next), range) == next, "it is permitted");
    }
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string words = model::Clean(input.Parameters[0]);
    const auto range = ParseTimeRange(words);
    Require(range == Expected(words), "the range of the words");

    test::MemoryServer server;
    server.Load();
    server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", input.Text);
    const auto header = model::FindParagraph(input.Text, 0, "[QUEUEMAN]");
    const auto line = header ? model::FindKeyLine(input.Text, header->Next, "Offpeak:") : std::nullopt;
    const std::string value = line ? model::Value(line->Text) : "";
    Require(ReadOffpeak() == (value.empty() ? std::nullopt : Expected(value)), "the off-peak period");
    if (range) CheckPermitted(words, NumberIn(input.Parameter(1)) & 15, NumberIn(input.Parameter(2)) & 31);
}

} // namespace bv::fuzz
