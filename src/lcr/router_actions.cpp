#include "lcr/router_actions.h"

#include "voice/messages.h"

namespace bv {
namespace {

void EnableKinds(const EnteredValues& values, RouterSettings& settings) {
    if (HasKey(values, "EmailLoginName") && !HasKey(values, "EmailEnabled"))
        settings.EmailEnabled = !settings.EmailLoginName.empty();
    if (HasKey(values, "WanInboxDirectory") && !HasKey(values, "WanEnabled"))
        settings.WanEnabled = !settings.WanInboxDirectory.empty();
}

// Whether the settings can be saved; false after a message.
bool CheckRouter(const RouterSettings& settings) {
    if (settings.LocalServerId.empty()) {
        ShowError(9183);
        return false;
    }
    const auto fault = FaultOfRouter(settings);
    if (fault) ShowError(9182, fault->Key, fault->Message);
    return !fault;
}

} // namespace

bool EnterRouterSettings(const EnteredValues& values) {
    return ChangeRouterSettings([&](RouterSettings& settings) {
        if (!EnterValues(RouterKeys(), values, settings)) return false;
        EnableKinds(values, settings);
        return CheckRouter(settings) && AreKept(RouterKeys(), values, settings, AsRead(settings));
    });
}

} // namespace bv
