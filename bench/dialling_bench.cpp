// Converting telephone numbers: the argument is how many, in turn from a few forms that take every way through the
// rules.
#include <benchmark/benchmark.h>

#include "dialling/numbers.h"

namespace bv::bench {
namespace {

constexpr std::int64_t kNumbers = 1'000'000;
constexpr std::string_view kForms[] = {"1234567",           "0181 123 4567",    "+44 (171) 123-4567",
                                       "+33 1 23456789",    "0033123456789",    "01711234567:22",
                                       "0044 181 765 4321", "9123456:4567 890", "+1 (212) 555.0123:77"};

// London with full lists, so that no search ends early.
DialProperties London() {
    DialProperties own;
    own.Mode = kDialLocation;
    own.Country = "44";
    own.Area = "171";
    own.NatlAccess = "0";
    own.IntlAccess = "00";
    own.NumberWithoutAreaMaxLen = 7;
    for (std::size_t i = 0; i < DialPrefixes::kLimit; ++i) {
        own.DialAsLocal.Add("1999" + std::to_string(i));
        own.DialAsNatl.Add("9999" + std::to_string(i));
    }
    return own;
}

using Conversion = StatusCode (*)(std::string_view, TelephoneNumber&, const DialProperties&, NumberTrace*);

void Convert(benchmark::State& state, Conversion convert) {
    const DialProperties own = London();
    TelephoneNumber result;
    for (auto _ : state) {
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            convert(kForms[static_cast<std::size_t>(i) % std::size(kForms)], result, own, nullptr);
            benchmark::DoNotOptimize(result);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK_CAPTURE(Convert, International, MakeInternationalNumber)->Arg(kNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, Dialable, MakeDialableNumber)->Arg(kNumbers)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace bv::bench
