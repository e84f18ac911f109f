// Both conversions of telephone numbers, with any properties, against the rules put as plainly as they can be.
// Parameters: number | Country | Area | NatlAccess | IntlAccess | longest local number | "a" to dial the area code, "n"
// for the national prefix in front. Each further line is an entry of DialAsNatl, or behind an "L" one of DialAsLocal.
#include <cstdlib>

#include "dialling/numbers.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

using Texts = std::vector<std::string>;

struct Own {
    std::string Country, Area, Natl, Intl;
    std::size_t LongestLocal = 0;
    bool AreaCode = false, NatlForLocal = false;
    Texts AsLocal, AsNatl;
};

bool Begins(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

bool BeginsWithOne(const std::string& text, const Texts& starts) {
    for (const std::string& start : starts)
        if (Begins(text, start)) return true;
    return false;
}

std::string International(const std::string& main, const Own& own) {
    if (Begins(main, "+")) return main;
    if (!own.Intl.empty() && Begins(main, own.Intl)) return "+" + main.substr(own.Intl.size());
    if (!own.Natl.empty() && Begins(main, own.Natl)) return "+" + own.Country + main.substr(own.Natl.size());
    const bool hasArea = own.LongestLocal != 0 && main.size() > own.LongestLocal;
    return "+" + own.Country + (hasArea ? "" : own.Area) + main;
}

std::string Dialable(std::string number, const Own& own) {
    bool national = false;
    const std::string before = Begins(number, "+") ? "+" : own.Intl;
    if (Begins(number, before)) {
        const std::string rest = number.substr(before.size());
        if (!Begins(rest, own.Country)) return Begins(number, "+") ? own.Intl + rest : number;
        number = rest.substr(own.Country.size());
        national = true;
    }
    if (!own.Natl.empty() && Begins(number, own.Natl)) {
        number.erase(0, own.Natl.size());
        national = true;
    }
    if (own.LongestLocal != 0 && number.size() > own.LongestLocal) national = true;
    if (national && !Begins(number, own.Area)) return BeginsWithOne(number, own.AsLocal) ? number : own.Natl + number;
    if (national) number.erase(0, own.Area.size());
    if (BeginsWithOne(number, own.AsNatl)) return own.Natl + own.Area + number;
    if (!own.AreaCode) return number;
    return (own.NatlForLocal ? own.Natl : "") + own.Area + number;
}

// The whole result; none when it is too long.
std::optional<std::string> Finished(const std::string& main, const std::string& result, const std::string& suffix) {
    if (main.size() > 40 || result.size() > 40) return {};
    return suffix.empty() || result.size() + suffix.size() >= 40 ? result : result + ":" + suffix;
}

void Check(StatusCode status, const TelephoneNumber& number, const NumberTrace& trace,
           const std::optional<std::string>& expected, const char* what) {
    Require(status == (expected ? 0 : -3982), what);
    RequireEqual(number, expected.value_or(""), what);
    RequireEqual(trace.back().Number, number, "the end of the trace");
}

std::string Prefix(const Input& input, std::size_t index) {
    return std::string(input.Parameter(index).value_or("").substr(0, 10));
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string typed(input.Parameters[0]);
    Own own{Prefix(input, 1), Prefix(input, 2), Prefix(input, 3), Prefix(input, 4), 0, false, false, {}, {}};
    own.LongestLocal = std::strtoul(std::string(input.Parameter(5).value_or("")).c_str(), nullptr, 10) % 65536;
    own.AreaCode = input.Parameter(6).value_or("").find('a') != std::string_view::npos;
    own.NatlForLocal = input.Parameter(6).value_or("").find('n') != std::string_view::npos;
    for (const std::string& line : model::ReadLines(input.Text)) {
        Texts& list = Begins(line, "L") ? own.AsLocal : own.AsNatl;
        if (list.size() < 31) list.push_back(line.substr(Begins(line, "L") ? 1 : 0, 10));
    }
    DialProperties properties;
    properties.Country = own.Country;
    properties.Area = own.Area;
    properties.NatlAccess = own.Natl;
    properties.IntlAccess = own.Intl;
    properties.NumberWithoutAreaMaxLen = static_cast<std::uint16_t>(own.LongestLocal);
    properties.DialAreaCode = own.AreaCode;
    properties.DialNatlAccessForLocal = own.NatlForLocal;
    for (const std::string& prefix : own.AsLocal) properties.DialAsLocal.Add(prefix);
    for (const std::string& prefix : own.AsNatl) properties.DialAsNatl.Add(prefix);

    std::string main;
    std::string suffix;
    const std::size_t colon = typed.find(':');
    if (colon != std::string::npos) suffix = typed.substr(colon + 1, 40);
    for (const char c : typed.substr(0, colon))
        if (std::string("()[]{} -.").find(c) == std::string::npos) main += c;
    TelephoneNumber number = "left over";
    NumberTrace trace;
    StatusCode status = MakeInternationalNumber(typed, number, properties, &trace);
    Check(status, number, trace, Finished(main, International(main, own), suffix), "MakeInternationalNumber");
    number = "left over";
    status = MakeDialableNumber(typed, number, properties, &trace);
    Check(status, number, trace, Finished(main, Dialable(main, own), suffix), "MakeDialableNumber");
}

} // namespace bv::fuzz
