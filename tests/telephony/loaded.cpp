// The tests' telephony library as the system loads it.
#include <gtest/gtest.h>

#include "dialling/fake_telephony.h"

namespace bv::test {

std::unique_ptr<platform::Library> LoadTelephony(const std::string& name, TelephonyAnswers* answers) {
    auto library = platform::Service<platform::Libraries>::System().Load(name);
    using Tell = void (*)(TelephonyAnswers*);
    const Tell tell = library ? reinterpret_cast<Tell>(library->Entry("AnswerTestsBy")) : nullptr;
    if (tell == nullptr) {
        ADD_FAILURE() << name << " beside the tests was not loaded; Wine needs WINEDLLOVERRIDES=tapi32=n";
        return nullptr;
    }
    tell(answers);
    return library;
}

} // namespace bv::test
