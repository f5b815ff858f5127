// The sweep of stale external objects: shared blocks and events of external
// execution whose creating process no longer exists, left behind by a run
// that was killed before it could remove them.
#pragma once

namespace TestSuite {

// Removes every shared block and event of this system's prefix whose
// creator (named by its id) has ended; objects of live processes and names
// without a creator stay. Gives the number removed.
unsigned int RemoveStaleExternalObjects();

}  // namespace TestSuite
