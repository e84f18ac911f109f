// The accounts of the network that the workstation is on.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/service.h"

namespace bv::platform {

// Texts are in the code page, with "?" for what that lacks.
struct NetworkUser {
    std::string Name;
    std::string Fullname;
    bool IsDisabled = false;
    bool IsWhole = true; // the code page has all its letters
};

struct NetworkDomain {
    std::string Name;       // empty: not known
    std::string Controller; // the computer that has its accounts, "\\NAME"
};

struct NetworkReading {
    unsigned long Error = 0; // the system's own number
    std::string Fault;       // and what it calls it
};

class NetworkUsers {
  public:
    virtual ~NetworkUsers() = default;

    // The domains whose accounts can be read, the workstation's own first.
    virtual std::vector<NetworkDomain> Domains() = 0;

    // Reads the user accounts of a computer, "\\NAME", or of this one, for an empty name, a page after the other, until
    // the visitor returns false. What has been read before an error has been visited.
    using Visitor = std::function<bool(std::span<const NetworkUser> page)>;
    virtual NetworkReading Read(const std::string& computer, const Visitor& visit) = 0;
};

template <>
NetworkUsers& Service<NetworkUsers>::System();

inline NetworkUsers& TheNetworkUsers() { return Service<NetworkUsers>::InUse(); }

} // namespace bv::platform
