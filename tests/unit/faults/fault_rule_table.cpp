#include "tests/unit/faults/fault_rules.h"

namespace nhupdate_test {

namespace {

constexpr std::nullopt_t kSame = std::nullopt;
constexpr int kAll = 0;

// Reasons why a failure leaves no record.
constexpr char kConsole[] = "there is no log: the console is told";
constexpr char kDialogs[] = "a dialog that comes all the same holds up the run but changes nothing";
constexpr char kNames[] = "the path stays as the program was started by it";
constexpr char kCom[] = "only some shell calls profit from COM";
constexpr char kNoData[] = "the empty log folder shows in the records of the grant and the dumps";
constexpr char kThere[] = "the folder is usually there; when it isn't, what needs it fails";
constexpr char kMissing[] = "a folder that isn't there has nothing in it";
constexpr char kCopiedOver[] = "what isn't deleted or copied alone is copied with its folder";
constexpr char kScan[] = "a folder that can't be listed counts as empty, one seen in part does not";
constexpr char kRemoval[] = "what can't be deleted is copied over, or does no harm";
constexpr char kRegistration[] = "single values are no reason to call an installation failed";
constexpr char kEachLevel[] = "where a folder's place can't be had, each level below is looked at";
constexpr char kPlainWay[] = "what can't be deleted at once is deleted when it is closed";
constexpr char kCurrentFolder[] = "nothing else depends on the current folder";
constexpr char kWait[] = "the exit code, or the check afterwards, tells whether it has ended";
constexpr char kExitCode[] = "a child that can't be asked is judged without a record";
constexpr char kInvisible[] = "a process that can't be read is invisible";
constexpr char kInforms[] = "the box only informs";

// The calls that find out whether a folder is a link.
constexpr char kAsksForPlace[] =
    "CreateFileW GetFileInformationByHandleEx GetFinalPathNameByHandleW";

constexpr char kOtherForm[] = "the place is then asked for in the other form";

constexpr wchar_t kSourceUnknown[] = L"4|Fail to copy file = 1920";
constexpr wchar_t kNotGranted[] = L"4|ShellExecute ICACLS fail on ICACLS.exe";
constexpr wchar_t kStillFound[] = L"4|Process NHUpdateManager.exe(4242) still found.";
constexpr wchar_t kCopyFailed[] = L"4|Fail to copy file = {error}";
constexpr wchar_t kCopyRetried[] = L"3|Copy fail, sleep 3 seconds and retry.";
constexpr wchar_t kConfigNotDeleted[] = L"4|Updater config file delete fail ({error}) : ";
constexpr wchar_t kConfigElsewhere[] = L"4|Updater config file delete fail (1920) : ";
constexpr wchar_t kNimbaCastManagerMissing[] = L"4|CSUpdateManager.exe not found : ";
constexpr wchar_t kNimbaCastNotCopied[] = L"4|Failed to copy NCS updater folder.";

// The first that fits counts.
const FaultRule kRules[] = {
    // The start of the program.
    {"", "GetModuleHandleW", L"", kAll, 1, nullptr, kConsole},
    {"", "GetThreadErrorMode SetThreadErrorMode", L"", kAll, kSame, nullptr, kDialogs},
    {"", "SetDefaultDllDirectories", L"", kAll, 1, nullptr, kConsole},
    {"", "CommandLineToArgvW", L"", kAll, kProcessEnds, nullptr, nullptr},
    {"", "CoInitialize", L"", kAll, kSame, nullptr, kCom},
    {"", "SHGetKnownFolderPath", L"", kAll, kSame, nullptr, kNoData},
    {"", "GetLongPathNameW", L"", kAll, kSame, nullptr, kNames},
    {"", "FindFirstFileW", L"* (its name)", kAll, kSame, nullptr, kNames},
    {"", "GetFinalPathNameByHandleW", L"", kAll, kSame, nullptr, kOtherForm},
    {"", kAsksForPlace, L"*{data}\\", 3, kSame, nullptr, kNoData},
    {"", kAsksForPlace, L"*{data}\\Corvane", 1, kSame, nullptr, kNoData},
    {"", kAsksForPlace, L"{data}\\Corvane\\", kAll, kSame, nullptr, kNoData},
    {"", "LoadLibraryW", L"", kAll, kSame, nullptr, kConsole},
    {"", "GetProcAddress", L"", kAll, kSame, nullptr, kConsole},
    {"Download NoUpdate", "OpenProcessToken", L"", kAll, kSame, L"2|Process NOT elevated.",
     nullptr},
    {"", "OpenProcessToken", L"", kAll, 10, L"2|Process NOT elevated.", nullptr},
    {"Download NoUpdate", "GetTokenInformation", L"", kAll, kSame, L"2|Process NOT elevated.",
     nullptr},
    {"", "GetTokenInformation", L"", kAll, 10, L"2|Process NOT elevated.", nullptr},

    // Language and texts.
    {"NoUpdate", "RegOpenKeyExW", L"", kAll, kSame, nullptr, "there is no Steam here anyway"},
    {"", "RegOpenKeyExW", L"", kAll, kSame, L"2|Steam language setting not found.", nullptr},
    {"", "RegQueryValueExW", L"", kAll, kSame, L"2|Steam language setting not found.", nullptr},
    {"", "GetPrivateProfileStringW", L"*\\SteamLanguageMapping.ini", kAll, kSame,
     L"2|Steam language mapping fail.", nullptr},
    {"", "GetUserPreferredUILanguages", L"", kAll, kSame, L"2|Use default language.", nullptr},
    {"", "CreateFileW GetFileSizeEx ReadFile", L"*.json", kAll, kSame,
     L"4|Fail to open string file : ", nullptr},
    {"", "MultiByteToWideChar", L"", kAll, kSame, L"2|Total 0 strings loaded.", nullptr},

    // Check and download.
    {"Download", "GetPrivateProfileStringW", L"*{base}\\Version.txt", kAll, kSame,
     L"2|Version mismatch between installed () and app folder (2.0.0).", nullptr},
    {"Download", "GetPrivateProfileStringW", L"*\\App\\Version.txt", kAll, kSame,
     L"2|Version mismatch between installed (1.0.0) and app folder ().", nullptr},
    {"NoUpdate", "GetPrivateProfileStringW", L"*{base}\\Version.txt", kAll, 12,
     L"2|Version mismatch between installed () and app folder (1.0.0).", nullptr},
    {"NoUpdate", "GetPrivateProfileStringW", L"*\\App\\Version.txt", kAll, 12,
     L"2|Version mismatch between installed (1.0.0) and app folder ().", nullptr},
    {"NoUpdate", "ShellExecuteExW", L"-CheckTask NIMBAHUB", kAll, 13,
     L"4|Fail to launch updater for download : {error}", nullptr},
    {"NoUpdate", "GetExitCodeProcess", L"-CheckTask NIMBAHUB", kAll, 13, nullptr, kExitCode},

    // Launches.
    {"", "ShellExecuteExW", L"-CheckTask NIMBAHUB", kAll, kSame,
     L"4|Fail to launch updater for download : {error}", nullptr},
    {"", "ShellExecuteExW", L"-DownloadOnly", kAll, kSame,
     L"4|Fail to launch updater for download : {error}", nullptr},
    {"", "ShellExecuteExW", L"-CheckTask NIMBA_SOFTWARE", kAll, kSame,
     L"4|Fail to launch updater for check : {error}", nullptr},
    {"", "ShellExecuteExW", L"| NIMBA_SOFTWARE", kAll, kSame,
     L"4|Fail to launch updater for update : {error}", nullptr},
    {"", "ShellExecuteExW", L"| NIMBAHUB", kAll, 14,
     L"4|Fail to launch updater for update : {error}", nullptr},
    {"", "ShellExecuteExW", L"*-self_update", kAll, 16,
     L"4|Fail to launch NHUpdateManager for self update : {error}", nullptr},
    {"", "ShellExecuteExW", L"*-final_update", kAll, 16,
     L"4|Fail to launch NHUpdateManager for final update : {error}", nullptr},
    {"", "ShellExecuteExW", L"-NoUI NIMBACS", kAll, kSame,
     L"4|Fail to launch updater for download : {error}", nullptr},
    {"", "ShellExecuteExW", L"*-Install", kAll, kSame,
     L"4|Fail to launch CSUpdateManager for install : {error}", nullptr},
    {"", "WaitForSingleObject", L"", kAll, kSame, nullptr, kWait},
    {"FailedUpdate", "GetExitCodeProcess", L"| NIMBAHUB", kAll, 0, nullptr, kExitCode},
    {"", "GetExitCodeProcess", L"", kAll, kSame, nullptr, kExitCode},
    {"", "MessageBoxW", L"", kAll, kSame, nullptr, kInforms},

    // Stopping the other copy. One that is overlooked at first is found by the check afterwards.
    {"Install FinalUpdate", "K32EnumProcesses", L"", 1, 1, kStillFound, nullptr},
    {"SelfUpdate", "K32EnumProcesses", L"", 1, 16, kStillFound, nullptr},
    {"", "K32EnumProcesses", L"", kAll, kSame, nullptr, kInvisible},
    {"", "OpenProcess", L"{pid}", kAll, kSame, nullptr, kInvisible},
    {"Install FinalUpdate", "OpenProcess", L"4242", kAll, 1, kStillFound, nullptr},
    {"SelfUpdate", "OpenProcess", L"4242", kAll, 16, kStillFound, nullptr},
    {"", "QueryFullProcessImageNameW", L"{pid}", kAll, kSame, nullptr, kInvisible},
    {"Install FinalUpdate", "QueryFullProcessImageNameW", L"4242", kAll, 1, kStillFound, nullptr},
    {"SelfUpdate", "QueryFullProcessImageNameW", L"4242", kAll, 16, kStillFound, nullptr},
    {"Install FinalUpdate", "TerminateProcess", L"4242", kAll, 1, kStillFound, nullptr},
    {"SelfUpdate", "TerminateProcess", L"4242", kAll, 16, kStillFound, nullptr},

    // Folders. A folder that isn't there shows when its first file is copied.
    {"", "CreateDirectoryW", L"*{base}\\CSUpdateManager", kAll, kSame, kCopyRetried, nullptr},
    {"", "CreateDirectoryW", L"*{base}\\Data", kAll, kSame, kCopyRetried, nullptr},
    {"SelfUpdate", "CreateDirectoryW", L"*{base}\\NHUpdateManager\\Config", kAll, kSame,
     L"3|Fail to copy NHUpdateManager, sleep and try again.", nullptr},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast", kAll, kSame, kNimbaCastNotCopied, nullptr},
    {"", "CreateDirectoryW", L"{root}\\NimbaCast\\Updater\\App", kAll, kSame, kNimbaCastNotCopied,
     nullptr},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\Updater\\Config", kAll, kSame,
     kNimbaCastNotCopied, nullptr},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\Updater\\NewUpdater", kAll, kSame,
     kNimbaCastNotCopied, nullptr},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\CSUpdateManager", kAll, kSame,
     kNimbaCastManagerMissing, nullptr},
    {"", "CreateDirectoryW", L"", kAll, kSame, nullptr, kThere},

    // Listings of what is to be deleted, and of the files of the top level, which are copied alone
    // and then with their folder.
    {"", "FindFirstFileW", L"*/*.*", kAll, kSame, nullptr, kRemoval},
    {"", "FindNextFileW", L"*/*.*", kAll, kSame, nullptr, kRemoval},
    {"", "FindFirstFileW", L"*{base}\\*.*", 1, kSame, nullptr, kCopiedOver},
    {"Install", "FindNextFileW", L"*{base}\\*.*", kAll, kSame, nullptr, kCopiedOver},
    {"", "FindFirstFileW", L"*{base}\\Updater\\App\\*.*", 1, kSame, nullptr, kCopiedOver},
    {"", "FindNextFileW", L"*{base}\\Updater\\App\\*.*", 6, kSame, nullptr, kCopiedOver},

    // Listings of what is to be copied: for the product, for its sibling, and by the other modes;
    // after the product's the last stage of an update scans for empty folders. Only the outermost
    // source may be missing.
    {"Install FinalUpdate", "FindFirstFileW", L"*{base}\\Updater\\App\\*.*", 2, kSame, nullptr,
     kMissing, ERROR_FILE_NOT_FOUND},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\*.*", kAll, kSame,
     L"4|Update.exe not found : ", nullptr, ERROR_FILE_NOT_FOUND},
    {"Install", "FindFirstFileW", L"*{root}\\NimbaCast\\Updater\\App\\CSUpdateManager\\*.*", kAll,
     kSame, kNimbaCastManagerMissing, nullptr, ERROR_FILE_NOT_FOUND},
    {"Update FailedUpdate", "FindFirstFileW", L"*\\NewUpdater\\*.*", kAll, kSame, nullptr, kMissing,
     ERROR_FILE_NOT_FOUND},
    {"SelfUpdate", "FindFirstFileW", L"*\\App\\NHUpdateManager\\*.*", kAll, kSame, nullptr,
     kMissing, ERROR_FILE_NOT_FOUND},
    {"", "FindFirstFileW", L"\\App\\Data\\*.*", kAll, kSame, nullptr, kMissing,
     ERROR_FILE_NOT_FOUND},
    {"Install FinalUpdate", "FindFirstFileW", L"\\App\\CSUpdateManager\\*.*", 1, kSame, nullptr,
     kMissing, ERROR_FILE_NOT_FOUND},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\App\\CSUpdateManager\\*.*", kAll, kSame,
     kNimbaCastManagerMissing, nullptr, ERROR_FILE_NOT_FOUND},
    {"Install", "FindFirstFileW", L"{base}\\Updater\\App\\NHUpdateManager\\", kAll, kSame, nullptr,
     kMissing, ERROR_FILE_NOT_FOUND},
    {"SelfUpdate", "FindFirstFileW", L"\\Config\\*.*", kAll, kSame, nullptr, kMissing,
     ERROR_FILE_NOT_FOUND},
    {"FinalUpdate", "FindFirstFileW", L"*\\Updater\\App\\*.*", 2, kSame, kCopyFailed, nullptr},
    {"FinalUpdate", "FindNextFileW", L"*\\Updater\\App\\*.*", 12, kSame, kCopyFailed, nullptr},
    {"FinalUpdate", "FindFirstFileW", L"*\\App\\CSUpdateManager\\*.*", 1, kSame, kCopyFailed,
     nullptr},
    {"FinalUpdate", "FindNextFileW", L"*\\App\\CSUpdateManager\\*.*", 3, kSame, kCopyFailed,
     nullptr},
    {"FinalUpdate", "FindFirstFileW", L"*\\App\\Data\\*.*", 1, kSame, kCopyFailed, nullptr},
    {"FinalUpdate", "FindNextFileW", L"*\\App\\Data\\*.*", 3, kSame, kCopyFailed, nullptr},
    {"FinalUpdate", "FindFirstFileW FindNextFileW", L"", kAll, kSame, nullptr, kScan},
    {"", "FindFirstFileW FindNextFileW", L"", kAll, kSame, kCopyFailed, nullptr},

    // The updater's configuration, and that it lies where it seems to.
    {"FailedUpdate", "CreateFileW", L"*\\ut.ini", kAll, kSame, kConfigNotDeleted, nullptr},
    {"FailedUpdate", "GetFileInformationByHandleEx", L"*\\ut.ini", kAll, kSame, nullptr,
     "what could be opened as a file is one"},
    {"FailedUpdate", "SetFileInformationByHandle", L"*\\ut.ini", 1, kSame, nullptr, kPlainWay},
    {"FailedUpdate", "SetFileInformationByHandle", L"*\\ut.ini", kAll, kSame, kConfigNotDeleted,
     nullptr},
    {"FailedUpdate", "CreateFileW GetFinalPathNameByHandleW", L"*{base}\\Updater\\", 1, kSame,
     nullptr, kEachLevel},
    {"FailedUpdate", "CreateFileW GetFinalPathNameByHandleW", L"", kAll, kSame, kConfigElsewhere,
     nullptr},

    // That the folders to which access is granted are no links. One that isn't there is none.
    {"Install FinalUpdate", kAsksForPlace, L"*{base}\\", 2, kSame, kNotGranted, nullptr},
    {"Install FinalUpdate", kAsksForPlace, L"*{data}\\", kAll, kSame, kNotGranted, nullptr},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Updater\\Config", 1, kSame, nullptr, kMissing,
     ERROR_FILE_NOT_FOUND},
    {"Install FinalUpdate", kAsksForPlace, L"*{base}\\Updater\\Config", 1, kSame, kNotGranted,
     nullptr},
    {"Install FinalUpdate", kAsksForPlace, L"*{base}\\Updater\\Temp", 1, kSame, kNotGranted,
     nullptr},
    {"Install FinalUpdate", kAsksForPlace, L"*{data}\\Corvane", kAll, kSame, kNotGranted, nullptr},
    {"", "GetSystemDirectoryW", L"", kAll, kSame, kNotGranted, nullptr},
    {"", "SetCurrentDirectoryW", L"system32", kAll, kSame, kNotGranted, nullptr},
    {"", "GetCurrentDirectoryW SetCurrentDirectoryW", L"", kAll, kSame, nullptr, kCurrentFolder},

    // That what is to be deleted, or copied into, lies where it seems to: looked at three times for
    // the deletion before the folder is held for its copy.
    {"Install", "CreateFileW", L"*{root}\\NimbaCast\\Updater\\", kAll, kSame, nullptr, kEachLevel},
    {"Install", "CreateFileW", L"{root}\\NimbaCast\\Updater\\", kAll, kSame, kNimbaCastNotCopied,
     nullptr},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\CSUpdateManager", 3, kSame, nullptr,
     kRemoval},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\CSUpdateManager", kAll, kSame, kCopyFailed,
     nullptr},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Data", 3, kSame, nullptr, kRemoval},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Data", kAll, kSame, kCopyFailed, nullptr},
    // The source: whether it lies in the target, and that it stays what it is while it is walked.
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Updater\\App\\Data", 1, kSame, nullptr,
     kRemoval},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Updater\\App\\Data", 2, kSame, kCopyFailed,
     nullptr},
    {"Install FinalUpdate", "CreateFileW", L"*{base}\\Updater\\App\\CSUpdateManager", 1, kSame,
     kCopyFailed, nullptr},
    {"Install FinalUpdate", "GetFileInformationByHandleEx", L"*{base}\\Updater\\App\\Data", 1,
     kSame, kSourceUnknown, nullptr},
    {"Install FinalUpdate", "GetFileInformationByHandleEx",
     L"*{base}\\Updater\\App\\CSUpdateManager", 1, kSame, kSourceUnknown, nullptr},
    {"Install", "CreateFileW GetFileInformationByHandleEx", L"{base}\\Updater\\", kAll, kSame,
     kNimbaCastNotCopied, nullptr},
    {"SelfUpdate", "CreateFileW", L"*\\App\\NHUpdateManager\\Config", kAll, kSame, kCopyFailed,
     nullptr},
    {"SelfUpdate", "GetFileInformationByHandleEx", L"*\\App\\NHUpdateManager\\Config", kAll, kSame,
     kSourceUnknown, nullptr},
    {"SelfUpdate", "CreateFileW", L"*{base}\\NHUpdateManager\\Config", 3, kSame, nullptr, kRemoval},
    {"SelfUpdate", "CreateFileW", L"*{base}\\NHUpdateManager\\Config", kAll, kSame, kCopyFailed,
     nullptr},
    {"", kAsksForPlace, L"", kAll, kSame, nullptr, kRemoval},
    {"", "SetFileInformationByHandle", L"", kAll, kSame, nullptr, kRemoval},

    // Files. The staged files of the top level are copied alone and then with their folder.
    {"", "DeleteFileW", L"*{base}\\Version.txt", kAll, 2,
     L"4|Fail to delete ({error}) : {base}\\Version.txt", nullptr},
    {"", "CopyFileW", L"*| {base}\\Version.txt", 1, 2, L"4|Fail to copy ({error}) : ", nullptr},
    {"", "CopyFileW", L"", kAll, kSame, kCopyFailed, nullptr},

    // Registration and folder access.
    {"", "RegCreateKeyExW", L"", kAll, kSame, nullptr, kRegistration},
    {"", "RegSetValueExW", L"", kAll, kSame, nullptr, kRegistration},
    {"", "ShellExecuteW", L"ICACLS.exe", kAll, kSame, kNotGranted, nullptr},
};

}  // namespace

std::span<const FaultRule> AllRules() {
  return kRules;
}

}  // namespace nhupdate_test
