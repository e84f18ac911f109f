// The sample server of the sources.
#pragma once

#include <string>

namespace bv::test {

// The directory "samples", by the path that the build has found it at, with "/" between its names.
std::string SamplesDirectory();

} // namespace bv::test
