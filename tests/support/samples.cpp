#include "support/samples.h"

namespace bv::test {

std::string SamplesDirectory() { return BV_SAMPLES; }

} // namespace bv::test
