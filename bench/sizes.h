// The argument of a benchmark: the size of its file, or the number of changes.
#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>

namespace bv::bench {

inline std::size_t Size(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

} // namespace bv::bench
