#pragma once

namespace KVR
{

/// Puts the three standard streams into a state in which the rest of the program need not think of them: one that is
/// closed becomes the null device, so that no file of a scene is opened in its place, and writing to a pipe that nobody
/// reads is an error of the write instead of a signal. Nothing that libraries print on streams is shown.
void PrepareStandardStreams();

/// Whether such a pipe is to end the program by its signal in the end, as it ends others: not when whoever started the
/// program wants that signal to be ignored.
bool IsEndedByPipe();

}  // namespace KVR
