// Both conversions of telephone numbers, with any properties, against the rules put as plainly as they can be.
// Parameters: number | Country | Area | NatlAccess | IntlAccess | longest local number | "a" to dial the area code, "n"
// for the national prefix in front. Each further line is an entry of DialAsNatl, or behind an "L" one of DialAsLocal.
#include <cstdlib>

#include "dialling/numbers.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

bool Begins(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

bool BeginsWithOne(const std::string& text, const DialPrefixes& starts) {
    for (const DialPrefix& start : starts)
        if (Begins(text, start.String())) return true;
    return false;
}

std::string International(const std::string& main, const DialProperties& own) {
    const std::string intl = own.IntlAccess.String();
    const std::string natl = own.NatlAccess.String();
    const std::string country = "+" + own.Country.String();
    if (Begins(main, "+")) return main;
    if (!intl.empty() && Begins(main, intl)) return "+" + main.substr(intl.size());
    if (!natl.empty() && Begins(main, natl)) return country + main.substr(natl.size());
    const bool hasArea = own.NumberWithoutAreaMaxLen != 0 && main.size() > own.NumberWithoutAreaMaxLen;
    return country + (hasArea ? "" : own.Area.String()) + main;
}

std::string Dialable(std::string number, const DialProperties& own) {
    const std::string intl = own.IntlAccess.String();
    const std::string natl = own.NatlAccess.String();
    const std::string area = own.Area.String();
    bool national = false;
    const std::string before = Begins(number, "+") ? "+" : intl;
    if (Begins(number, before)) {
        const std::string rest = number.substr(before.size());
        if (!Begins(rest, own.Country.String())) return Begins(number, "+") ? intl + rest : number;
        number = rest.substr(own.Country.Size());
        national = true;
    }
    if (!natl.empty() && Begins(number, natl)) {
        number.erase(0, natl.size());
        national = true;
    }
    if (own.NumberWithoutAreaMaxLen != 0 && number.size() > own.NumberWithoutAreaMaxLen) national = true;
    if (national && !Begins(number, area)) return BeginsWithOne(number, own.DialAsLocal) ? number : natl + number;
    if (national) number.erase(0, area.size());
    if (BeginsWithOne(number, own.DialAsNatl)) return natl + area + number;
    if (!own.DialAreaCode) return number;
    return (own.DialNatlAccessForLocal ? natl : "") + area + number;
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

DialProperties Properties(const Input& input) {
    const auto parameter = [&input](std::size_t index) { return std::string(input.Parameter(index).value_or("")); };
    DialProperties own;
    own.Country = parameter(1);
    own.Area = parameter(2);
    own.NatlAccess = parameter(3);
    own.IntlAccess = parameter(4);
    own.NumberWithoutAreaMaxLen = static_cast<std::uint16_t>(std::strtoul(parameter(5).c_str(), nullptr, 10));
    own.DialAreaCode = parameter(6).find('a') != std::string::npos;
    own.DialNatlAccessForLocal = parameter(6).find('n') != std::string::npos;
    for (const std::string& line : model::ReadLines(input.Text)) {
        const bool isLocal = Begins(line, "L");
        (isLocal ? own.DialAsLocal : own.DialAsNatl).Add(line.substr(isLocal ? 1 : 0));
    }
    return own;
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string typed(input.Parameters[0]);
    const DialProperties own = Properties(input);
    std::string main;
    std::string suffix;
    const std::size_t colon = typed.find(':');
    if (colon != std::string::npos) suffix = typed.substr(colon + 1, 40);
    for (const char c : typed.substr(0, colon))
        if (std::string("()[]{} -.").find(c) == std::string::npos) main += c;
    TelephoneNumber number = "left over";
    NumberTrace trace;
    StatusCode status = MakeInternationalNumber(typed, number, own, &trace);
    Check(status, number, trace, Finished(main, International(main, own), suffix), "MakeInternationalNumber");
    number = "left over";
    status = MakeDialableNumber(typed, number, own, &trace);
    Check(status, number, trace, Finished(main, Dialable(main, own), suffix), "MakeDialableNumber");
}

} // namespace bv::fuzz
