// The standard streams of a process.
#pragma once

namespace kelsystem {

// To be called before anything is opened: descriptors 0 to 2 that are closed lead to /dev/null from then on, so that no
// other file or connection gets their numbers, and what is meant for people is not written into it. Reading and writing
// them fails as before.
void holdStandardStreams();

}  // namespace kelsystem
