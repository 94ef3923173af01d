#pragma once

// Every command line that the program ever starts, with its messages, in one place. The updater is
// a program of its own and these are its switches:
//
//   -NoUI                    no user interface; left out only where the user may watch the update
//   -CheckTask <task>        only find out whether there is an update for the task
//   <task>                   update it: NIMBAHUB, NIMBACS or the updater's own package
//   -AdditionTask:<task>     handle a further task as well
//   -SkipAdditionTasks       leave out what the task would bring along
//   -DownloadOnly            fetch but don't install
//   -KillBrothers            end other running updaters first; never for a check
//   -ExitWhenParentDie:<id>  end with this process; for every updater that is waited for

#include "update/child_launch.h"

namespace nhupdate {

inline constexpr ChildLaunch kCheckForUpdate = {
    .executable = L"\\Updater.exe",
    .parameters = CLaunchParameters::WithProcessId(
        L"-NoUI -CheckTask NIMBAHUB -SkipAdditionTasks -ExitWhenParentDie:%d"),
    .not_found_message = L"Update.exe not found : %s",               // sic
    .failure_message = L"Fail to launch updater for download : %d",  // sic: used for the check too
    .success_message = L"Launch updater success for check.",
    .waits = true,
};

inline constexpr ChildLaunch kBackgroundDownload = {
    .executable = L"\\Updater.exe",
    .parameters = CLaunchParameters::Plain(
        L"-NoUI NIMBAHUB \"-AdditionTask:NIMBA_SOFTWARE "
        L"com.corvane.windows.nimba_internal.new_updater\" -SkipAdditionTasks -DownloadOnly "
        L"-KillBrothers"),
    .not_found_message = L"Update.exe not found : %s",  // sic
    .failure_message = L"Fail to launch updater for download : %d",
    .success_message = L"Launch updater success for baclground download.",  // sic
    .waits = false,
};

inline constexpr ChildLaunch kCheckForUpdater = {
    .executable = L"\\Updater.exe",
    .parameters = CLaunchParameters::WithProcessId(
        L"-NoUI -CheckTask NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater "
        L"-SkipAdditionTasks -ExitWhenParentDie:%d"),
    .not_found_message = L"Update.exe not found : %s",  // sic
    .failure_message = L"Fail to launch updater for check : %d",
    .success_message = L"Launch updater success for check.",
    .waits = true,
};

inline constexpr ChildLaunch kUpdateUpdater = {
    .executable = L"\\Updater.exe",
    .parameters = CLaunchParameters::WithProcessId(
        L"NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
        L"-KillBrothers -ExitWhenParentDie:%d"),
    .not_found_message = L"Update.exe not found : %s",  // sic
    .failure_message = L"Fail to launch updater for update : %d",
    .success_message = L"Launch updater success for update.",
    .waits = true,
};

inline constexpr ChildLaunch kUpdateProduct = {
    .executable = L"\\Updater.exe",
    .parameters = CLaunchParameters::WithProcessId(
        L"NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:%d"),
    .not_found_message = L"Update.exe not found : %s",  // sic
    .failure_message = L"Fail to launch updater for update : %d",
    .success_message = L"Launch updater success for update.",
    .waits = true,
};

inline constexpr ChildLaunch kStartSelfUpdate = {
    .executable = L"\\NHUpdateManager.exe",
    .parameters = CLaunchParameters::Plain(L"-self_update"),
    .not_found_message = L"NHUpdateManager.exe not found : %s",
    .failure_message = L"Fail to launch NHUpdateManager for self update : %d",
    .success_message = L"Launch NHUpdateManager success for self update.",
    .waits = false,
};

inline constexpr ChildLaunch kStartFinalUpdate = {
    .executable = L"\\NHUpdateManager.exe",
    .parameters = CLaunchParameters::Plain(L"-final_update"),
    .not_found_message = L"NHUpdateManager.exe not found for final update : %s",
    .failure_message = L"Fail to launch NHUpdateManager for final update : %d",
    .success_message = L"Launch NHUpdateManager success for final update.",
    .waits = false,
};

inline constexpr ChildLaunch kDownloadNimbaCast = {
    .executable = L"\\Updater.exe",
    .parameters =
        CLaunchParameters::WithProcessId(L"-NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:%d"),
    .not_found_message = L"Update.exe not found : %s",  // sic
    .failure_message = L"Fail to launch updater for download : %d",
    .success_message = L"Launch updater success for download.",
    .waits = true,
};

inline constexpr ChildLaunch kInstallNimbaCast = {
    .executable = L"\\CSUpdateManager.exe",
    .parameters = CLaunchParameters::Plain(L"-Install"),
    .not_found_message = L"CSUpdateManager.exe not found : %s",
    .failure_message = L"Fail to launch CSUpdateManager for install : %d",
    .success_message = L"Launch CSUpdateManager success for install.",
    .waits = true,
    .exit_message = L"CSUpdateManager exit = %d",
};

}  // namespace nhupdate
