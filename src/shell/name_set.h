// Names that are looked up without regard to case.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/ascii.h"

namespace bv {

class NameSet {
  public:
    NameSet() = default;
    NameSet(std::initializer_list<std::string_view> names) {
        for (const std::string_view name : names) Add(name);
    }
    explicit NameSet(std::span<const std::string> names) {
        for (const std::string& name : names) Add(name);
    }

    void Add(std::string_view name) { names_.insert(UpperText(name)); }
    bool Remove(std::string_view name) { return names_.erase(UpperText(name)) != 0; } // whether it was there
    [[nodiscard]] bool IsEmpty() const { return names_.empty(); }
    [[nodiscard]] bool Has(std::string_view name) const { return names_.contains(UpperText(name)); }

  private:
    std::unordered_set<std::string> names_; // in upper case
};

} // namespace bv
