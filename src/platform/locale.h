// How the workstation's user writes dates.
#pragma once

#include <string>

#include "platform/service.h"

namespace bv::platform {

enum class DateStyle { Short, Long };
enum class NameStyle { Full, Abbreviated };

// Each text is in the workstation's code page and empty when the system has none.
class Locale {
  public:
    virtual ~Locale() = default;

    // A picture of tokens such as "dd/MM/yy" (Windows' date picture tokens).
    virtual std::string DatePicture(DateStyle style) = 0;

    virtual std::string MonthName(int month, NameStyle style) = 0; // 1 to 12
    virtual std::string DayName(int weekday, NameStyle style) = 0; // 0 is Sunday
};

template <>
Locale& Service<Locale>::System();

inline Locale& TheLocale() { return Service<Locale>::InUse(); }

} // namespace bv::platform
