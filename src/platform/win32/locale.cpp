#include "platform/locale.h"

#include <windows.h>

#include <array>

namespace bv::platform {

namespace {

std::string LocaleText(LCTYPE kind) {
    std::array<char, 256> text{};
    const int length = GetLocaleInfoA(LOCALE_USER_DEFAULT, kind, text.data(), static_cast<int>(text.size()));
    return length <= 1 ? std::string() : std::string(text.data(), static_cast<std::size_t>(length) - 1);
}

class WindowsLocale final : public Locale {
  public:
    std::string DatePicture(DateStyle style) override {
        return LocaleText(style == DateStyle::Short ? LOCALE_SSHORTDATE : LOCALE_SLONGDATE);
    }

    std::string MonthName(int month, NameStyle style) override {
        if (month < 1 || month > 12) return {};
        const LCTYPE january = style == NameStyle::Full ? LOCALE_SMONTHNAME1 : LOCALE_SABBREVMONTHNAME1;
        return LocaleText(january + static_cast<LCTYPE>(month - 1));
    }

    std::string DayName(int weekday, NameStyle style) override {
        if (weekday < 0 || weekday > 6) return {};
        const LCTYPE monday = style == NameStyle::Full ? LOCALE_SDAYNAME1 : LOCALE_SABBREVDAYNAME1;
        return LocaleText(monday + static_cast<LCTYPE>((weekday + 6) % 7));
    }
};

} // namespace

template <>
Locale& Service<Locale>::System() {
    static WindowsLocale locale;
    return locale;
}

} // namespace bv::platform
