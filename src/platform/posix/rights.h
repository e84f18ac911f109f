// Who may do what with a file: its owner, group, mode and access list.
#pragma once

namespace bv::platform {

// Gives the file of one descriptor the rights of another one's. False when one of them could not be given; then it is
// not more readable than the other one.
bool TakeRights(int descriptor, int other);

// Gives a file that was made for its owner alone the mode of any new one. Where the file system knows no modes or
// refuses to change them, the file stays as it was made: it can only be less readable than it might be.
void TakeUsualMode(int descriptor);

} // namespace bv::platform
