#include "platform/locale.h"

namespace bv::platform {

namespace {

// Nothing is taken from the locale here: its texts are not in the code page of the server's files, and what a
// script gets should not depend on the account that runs it. The callers' own defaults stand.
class PosixLocale final : public Locale {
  public:
    std::string DatePicture(DateStyle /*style*/) override { return {}; }
    std::string MonthName(int /*month*/, NameStyle /*style*/) override { return {}; }
    std::string DayName(int /*weekday*/, NameStyle /*style*/) override { return {}; }
};

} // namespace

template <>
Locale& Service<Locale>::System() {
    static PosixLocale locale;
    return locale;
}

} // namespace bv::platform
