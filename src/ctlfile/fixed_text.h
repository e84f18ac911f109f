// Texts with a limit: a record's field of at most N characters, always terminated.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>

namespace bv {

// A text of at most N characters; a longer value is cut. Copyable and comparable like any value.
template <std::size_t N>
class FixedText {
  public:
    static constexpr std::size_t kLimit = N;

    FixedText() = default;
    FixedText(std::string_view text) { Assign(text); }
    FixedText(const char* text) { Assign(text); }
    FixedText(const std::string& text) { Assign(text); }

    void Assign(std::string_view text) {
        size_ = static_cast<std::uint16_t>(std::min(text.size(), N));
        if (size_ != 0) std::memcpy(text_.data(), text.data(), size_);
        text_[size_] = '\0';
    }
    void Clear() { Assign({}); }

    [[nodiscard]] bool IsEmpty() const { return size_ == 0; }
    [[nodiscard]] std::size_t Size() const { return size_; }
    [[nodiscard]] std::string_view View() const { return {text_.data(), size_}; }
    [[nodiscard]] std::string String() const { return std::string(View()); }
    [[nodiscard]] const char* Terminated() const { return text_.data(); }
    operator std::string_view() const { return View(); }

    friend bool operator==(const FixedText& a, const FixedText& b) { return a.View() == b.View(); }
    friend bool operator==(const FixedText& a, std::string_view b) { return a.View() == b; }
    friend bool operator==(const FixedText& a, const char* b) { return a.View() == b; }
    friend std::ostream& operator<<(std::ostream& out, const FixedText& text) { return out << text.View(); }

  private:
    static_assert(N < 65536);
    std::array<char, N + 1> text_{};
    std::uint16_t size_ = 0;
};

// A FixedText of any limit, as the place that an operation fills. It must not outlive the text.
class TextPlace {
  public:
    template <std::size_t N>
    TextPlace(FixedText<N>& text)
        : text_(&text),
          assign_([](void* place, std::string_view value) { static_cast<FixedText<N>*>(place)->Assign(value); }) {}

    void Assign(std::string_view value) const { assign_(text_, value); }

  private:
    void* text_;
    void (*assign_)(void*, std::string_view);
};

} // namespace bv
