#pragma once

namespace sim::ExitStatus {

constexpr int kCannotListen = 1;
constexpr int kNoWindow = 1;
constexpr int kRecordingFailed = 1;
constexpr int kNoReplay = 1;
constexpr int kDifferent = 1;
constexpr int kBadCommandLine = 2;
constexpr int kBrokenRecording = 2;

} // namespace sim::ExitStatus
