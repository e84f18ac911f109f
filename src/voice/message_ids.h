// The numbered strings by their names: kUnableToOpenFile is 413. Each knows how many values its text takes. Here are
// those that several areas use; an area's own are in its header of messages (lcr/lcr_messages.h).
#pragma once

#include "voice/placeholder.h"

namespace bv {

// The number of a string whose text takes that many values.
template <std::size_t kPlaces>
class MessageId {
  public:
    explicit constexpr MessageId(int number) : number_(number) {}
    constexpr operator int() const { return number_; }

  private:
    int number_;
};

#define STR(id, name, text) inline constexpr MessageId<CountPlaces(text)> k##name{id};
#include "resources/strings/shared.def"
#undef STR

} // namespace bv
