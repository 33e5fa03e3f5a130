#pragma once

namespace KVR
{

/// Puts the three standard streams into a state in which the rest of the program need not think of them: one that is
/// closed becomes the null device, so that no file of a scene is opened in its place, and writing to a pipe that nobody
/// reads is an error of the write instead of a signal.
void PrepareStandardStreams();

}  // namespace KVR
