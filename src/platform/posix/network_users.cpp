#include "platform/network_users.h"

#include <cerrno>

namespace bv::platform {
namespace {

class NoNetworkUsers final : public NetworkUsers {
  public:
    std::vector<NetworkDomain> Domains() override { return {}; }
    NetworkReading Read(const std::string&, const Visitor&) override {
        return {ENOSYS, "this system has no list of network users"};
    }
};

} // namespace

template <>
NetworkUsers& Service<NetworkUsers>::System() {
    static NoNetworkUsers users;
    return users;
}

} // namespace bv::platform
