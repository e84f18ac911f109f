// The process's own streams.
#pragma once

#include "console/console.h"

namespace bv::console {

class StandardConsole : public Console {
  public:
    void PrintResult(std::string_view text) override;
    void PrintNotice(std::string_view text) override;
    std::optional<std::string> ReadLine() override;
    std::optional<std::string> ReadHiddenLine() override;
    bool IsTerminal() override;
    bool HasEncoding() override;
    std::optional<std::string> Decode(std::string_view text) override;
    std::string Encode(std::string_view utf8) override;
    bool HasUtf8Arguments() override;
    std::optional<std::size_t> Width() override;
    bool TakesColours() override;

    // Hands all results to the system. False, with a notice, when they could not be written.
    bool Finish();
};

} // namespace bv::console
