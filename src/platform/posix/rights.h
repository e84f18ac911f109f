// Who may do what with a file: its owner, group, mode and access list.
#pragma once

namespace bv::platform {

// Gives the file of one descriptor the rights of another one's. False when one of them could not be given; then it is
// not more readable than the other one.
bool TakeRights(int descriptor, int other);

// Gives a file the mode of any new one.
bool TakeUsualMode(int descriptor);

} // namespace bv::platform
