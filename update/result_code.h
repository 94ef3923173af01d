#pragma once

// Every code the program can end with. A code means something only together with the mode that
// the program was started in, so several names share a number.

namespace nhupdate {

// "-install", "-update", "-self_update" and "-final_update", and when there is no mode.
inline constexpr int kSucceeded = 0;

// Before any mode is entered, so with no mode.
inline constexpr int kStartFailed = 1;

// "-install", "-update", "-self_update" and "-final_update".
inline constexpr int kNotElevated = 10;

// "-download".
inline constexpr int kNoUpdateAvailable = 11;
inline constexpr int kUpdateFound = 12;
inline constexpr int kCheckFailed = 13;
inline constexpr int kCheckUpdaterMissing = 14;

// "-install" and "-final_update".
inline constexpr int kProcessesNotStopped = 1;
inline constexpr int kFilesNotCopied = 2;
inline constexpr int kRegistryNotUpdated = 4;

// "-update".
inline constexpr int kUpdaterFailed = 13;
inline constexpr int kUpdaterNotLaunched = 14;  // missing or not launchable

// "-update" and "-self_update".
inline constexpr int kNextStageMissing = 15;
inline constexpr int kNextStageNotReady = 16;  // not launched, or its way not cleared

// The NimbaCast installation. Its result stays inside the program.
inline constexpr int kNimbaCastDownloadFailed = 13;
inline constexpr int kNimbaCastUpdaterMissing = 14;  // not copied or not there
inline constexpr int kNimbaCastManagerMissing = 17;
inline constexpr int kNimbaCastInstallFailed = 18;

}  // namespace nhupdate
