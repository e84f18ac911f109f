#include "platform/printers.h"

namespace bv::platform {
namespace {

class NoPrinters final : public Printers {
  public:
    bool IsThere() override { return false; }
    PrinterListing Installed() override { return {}; }
    PrinterListing Of(const std::string&) override { return {}; }
    std::vector<std::string> Bins(const std::string&) override { return {}; }
    std::vector<std::string> Papers(const std::string&) override { return {}; }
};

} // namespace

template <>
Printers& Service<Printers>::System() {
    static NoPrinters printers;
    return printers;
}

} // namespace bv::platform
