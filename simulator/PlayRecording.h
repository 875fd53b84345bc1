#pragma once

namespace sim {

struct CommandLine;

/// Plays the recording that the options name. Returns the exit status. Called by main, before any other thread exists.
int playRecording(CommandLine &options, char *argv[]);

} // namespace sim
