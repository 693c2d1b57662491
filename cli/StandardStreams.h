// What has to be in order before anything is written or opened.
#pragma once

namespace kestrin::cli {

/// Makes a reader that goes away an ordinary error of the write, and gives standard streams that are closed
/// something harmless to point at: otherwise the next file to be opened would become standard output.
void prepareStandardStreams();

/// Whether to use colours on this descriptor: a terminal that can show them, and a user who has not said
/// otherwise (NO_COLOR).
bool wantsColour(int descriptor);

/// Qt insists on UTF-8 and warns on standard error about every other locale; this chooses it beforehand.
void preferUtf8();

} // namespace kestrin::cli
