#include "tests/unit/faults/fault_rules.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kNotFound = ERROR_FILE_NOT_FOUND;

constexpr char kInstalling[] = "Install FinalUpdate";

// Reasons why a failure leaves no record.
constexpr char kMemory[] = "nothing can be done without memory, not even a record";
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
constexpr char kOtherForm[] = "the place is then asked for in the other form";
constexpr char kInforms[] = "the box only informs";

// The calls that find out whether a folder is a link.
constexpr char kAsksForPlace[] = "CreateFileW GetFileInformationByHandleEx";

// The calls that are needed to end another process.
constexpr char kReachesProcess[] = "OpenProcess QueryFullProcessImageNameW TerminateProcess";

constexpr wchar_t kNotElevated[] = L"2|Process NOT elevated.";
constexpr wchar_t kNoDownload[] = L"4|Fail to launch updater for download : {error}";
constexpr wchar_t kNoUpdate[] = L"4|Fail to launch updater for update : {error}";
constexpr wchar_t kSourceUnknown[] = L"4|Fail to copy file = 1920";
constexpr wchar_t kNotGranted[] = L"4|ShellExecute ICACLS fail on ICACLS.exe";
constexpr wchar_t kStillFound[] = L"4|Process NHUpdateManager.exe(4242) still found.";
constexpr wchar_t kCopyFailed[] = L"4|Fail to copy file = {error}";
constexpr wchar_t kCopyRetried[] = L"3|Copy fail, sleep 3 seconds and retry.";
constexpr wchar_t kConfigNotDeleted[] = L"4|Updater config file delete fail ({error}) : ";
constexpr wchar_t kConfigElsewhere[] = L"4|Updater config file delete fail (1920) : ";
constexpr wchar_t kNimbaCastManagerMissing[] = L"4|CSUpdateManager.exe not found : ";
constexpr wchar_t kNimbaCastNotCopied[] = L"4|Failed to copy NCS updater folder.";

// The first rule that fits a call is the one that counts.
const FaultRule kRules[] = {
    // The start of the program.
    {"", "GetModuleHandleW", L"", Result(1, kConsole)},
    {"", "GetThreadErrorMode SetThreadErrorMode", L"", kDialogs},
    {"", "SetDefaultDllDirectories", L"", Result(1, kConsole)},
    {"", "CommandLineToArgvW", L"", Result(kProcessEnds, kMemory)},
    {"", "CoInitialize", L"", kCom},
    {"", "SHGetKnownFolderPath", L"", kNoData},
    {"", "GetLongPathNameW", L"", kNames},
    {"", "FindFirstFileW", L"* (its name)", kNames},
    {"", "GetFinalPathNameByHandleW", L"", kOtherForm},
    {"", "CreateFileW", L"*{data}\\", kNoData, 3},
    {"", kAsksForPlace, L"*{data}\\Corvane", kNoData, 1},
    {"", kAsksForPlace, L"{data}\\Corvane\\", kNoData},
    {"", "LoadLibraryW GetProcAddress", L"", kConsole},
    {"Download NoUpdate", "OpenProcessToken GetTokenInformation", L"", kNotElevated},
    {"", "OpenProcessToken GetTokenInformation", L"", Result(10, kNotElevated)},

    // Language and texts.
    {"NoUpdate", "RegOpenKeyExW", L"", "there is no Steam here anyway"},
    {"", "RegOpenKeyExW RegQueryValueExW", L"", L"2|Steam language setting not found."},
    {"", "GetPrivateProfileStringW", L"*\\SteamLanguageMapping.ini",
     L"2|Steam language mapping fail."},
    {"", "GetUserPreferredUILanguages", L"", L"2|Use default language."},
    {"", "CreateFileW GetFileSizeEx ReadFile", L"*.json", L"4|Fail to open string file : "},
    {"", "MultiByteToWideChar", L"", L"2|Total 0 strings loaded."},

    // Check and download.
    {"Download", "GetPrivateProfileStringW", L"*{base}\\Version.txt",
     L"2|Version mismatch between installed () and app folder (2.0.0)."},
    {"Download", "GetPrivateProfileStringW", L"*\\App\\Version.txt",
     L"2|Version mismatch between installed (1.0.0) and app folder ()."},
    {"NoUpdate", "GetPrivateProfileStringW", L"*{base}\\Version.txt",
     Result(12, L"2|Version mismatch between installed () and app folder (1.0.0).")},
    {"NoUpdate", "GetPrivateProfileStringW", L"*\\App\\Version.txt",
     Result(12, L"2|Version mismatch between installed (1.0.0) and app folder ().")},
    {"NoUpdate", "ShellExecuteExW", L"-CheckTask NIMBAHUB", Result(13, kNoDownload)},
    {"NoUpdate", "GetExitCodeProcess", L"-CheckTask NIMBAHUB", Result(13, kExitCode)},

    // Launches.
    {"", "ShellExecuteExW", L"-CheckTask NIMBAHUB", kNoDownload},
    {"", "ShellExecuteExW", L"-DownloadOnly", kNoDownload},
    {"", "ShellExecuteExW", L"-CheckTask NIMBA_SOFTWARE",
     L"4|Fail to launch updater for check : {error}"},
    {"", "ShellExecuteExW", L"| NIMBA_SOFTWARE", kNoUpdate},
    {"", "ShellExecuteExW", L"| NIMBAHUB", Result(14, kNoUpdate)},
    {"", "ShellExecuteExW", L"*-self_update",
     Result(16, L"4|Fail to launch NHUpdateManager for self update : {error}")},
    {"", "ShellExecuteExW", L"*-final_update",
     Result(16, L"4|Fail to launch NHUpdateManager for final update : {error}")},
    {"", "ShellExecuteExW", L"-NoUI NIMBACS", kNoDownload},
    {"", "ShellExecuteExW", L"*-Install",
     L"4|Fail to launch CSUpdateManager for install : {error}"},
    {"", "WaitForSingleObject", L"", kWait},
    {"FailedUpdate", "GetExitCodeProcess", L"| NIMBAHUB", Result(0, kExitCode)},
    {"", "GetExitCodeProcess", L"", kExitCode},
    {"", "MessageBoxW", L"", kInforms},

    // Stopping the other running copy, which is found afterwards if it was overlooked at first.
    {kInstalling, "K32EnumProcesses", L"", Result(1, kStillFound), 1},
    {"SelfUpdate", "K32EnumProcesses", L"", Result(16, kStillFound), 1},
    {"", "K32EnumProcesses", L"", kInvisible},
    {"", "OpenProcess QueryFullProcessImageNameW", L"{pid}", kInvisible},
    {kInstalling, kReachesProcess, L"4242", Result(1, kStillFound)},
    {"SelfUpdate", kReachesProcess, L"4242", Result(16, kStillFound)},

    // Folders. One that couldn't be created is noticed when the first file is copied into it.
    {"", "CreateDirectoryW", L"*{base}\\CSUpdateManager", kCopyRetried},
    {"", "CreateDirectoryW", L"*{base}\\Data", kCopyRetried},
    {"SelfUpdate", "CreateDirectoryW", L"*{base}\\NHUpdateManager\\Config",
     L"3|Fail to copy NHUpdateManager, sleep and try again."},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast", kNimbaCastNotCopied},
    {"", "CreateDirectoryW", L"{root}\\NimbaCast\\Updater\\App", kNimbaCastNotCopied},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\Updater\\Config", kNimbaCastNotCopied},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\Updater\\NewUpdater", kNimbaCastNotCopied},
    {"", "CreateDirectoryW", L"*{root}\\NimbaCast\\CSUpdateManager", kNimbaCastManagerMissing},
    {"", "CreateDirectoryW", L"", kThere},

    // Listings of what is to be deleted, and of the top level's files, which are copied alone first
    // and then with their folder.
    {"", "FindFirstFileW FindNextFileW", L"*/*.*", kRemoval},
    {"", "FindFirstFileW", L"*{base}\\*.*", kCopiedOver, 1},
    {"Install", "FindNextFileW", L"*{base}\\*.*", kCopiedOver},
    {"", "FindFirstFileW", L"*{base}\\Updater\\App\\*.*", kCopiedOver, 1},
    {"", "FindNextFileW", L"*{base}\\Updater\\App\\*.*", kCopiedOver, 6},

    // Listings of what is to be copied: for the product, for NimbaCast, and by the other modes. The
    // last stage of an update also looks for empty folders after it. Of a source only the outermost
    // folder may be missing.
    {kInstalling, "FindFirstFileW", L"*{base}\\Updater\\App\\*.*", kMissing, 2, kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\*.*", L"4|Update.exe not found : ", kAll,
     kNotFound},
    {"Install", "FindFirstFileW", L"*{root}\\NimbaCast\\Updater\\App\\CSUpdateManager\\*.*",
     kNimbaCastManagerMissing, kAll, kNotFound},
    {"Update FailedUpdate", "FindFirstFileW", L"*\\NewUpdater\\*.*", kMissing, kAll, kNotFound},
    {"SelfUpdate", "FindFirstFileW", L"*\\App\\NHUpdateManager\\*.*", kMissing, kAll, kNotFound},
    {"", "FindFirstFileW", L"\\App\\Data\\*.*", kMissing, kAll, kNotFound},
    {kInstalling, "FindFirstFileW", L"\\App\\CSUpdateManager\\*.*", kMissing, 1, kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\App\\*.*", kNimbaCastManagerMissing, kAll,
     kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\Config\\*.*", kMissing, kAll, kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\NewUpdater\\*.*", kMissing, kAll, kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\Temp\\*.*", kMissing, kAll, kNotFound},
    {"Install", "FindFirstFileW", L"*{base}\\Updater\\App\\CSUpdateManager\\*.*",
     kNimbaCastManagerMissing, kAll, kNotFound},
    {"Install", "FindFirstFileW", L"{base}\\Updater\\App\\NHUpdateManager\\", kMissing, kAll,
     kNotFound},
    {"SelfUpdate", "FindFirstFileW", L"\\Config\\*.*", kMissing, kAll, kNotFound},
    {"FinalUpdate", "FindFirstFileW", L"*\\Updater\\App\\*.*", kCopyFailed, 2},
    {"FinalUpdate", "FindNextFileW", L"*\\Updater\\App\\*.*", kCopyFailed, 12},
    {"FinalUpdate", "FindFirstFileW", L"*\\App\\CSUpdateManager\\*.*", kCopyFailed, 1},
    {"FinalUpdate", "FindNextFileW", L"*\\App\\CSUpdateManager\\*.*", kCopyFailed, 3},
    {"FinalUpdate", "FindFirstFileW", L"*\\App\\Data\\*.*", kCopyFailed, 1},
    {"FinalUpdate", "FindNextFileW", L"*\\App\\Data\\*.*", kCopyFailed, 3},
    {"FinalUpdate", "FindFirstFileW FindNextFileW", L"", kScan},
    {"", "FindFirstFileW FindNextFileW", L"", kCopyFailed},

    // Deleting the updater's configuration, and making sure that no link leads elsewhere.
    {"FailedUpdate", "CreateFileW", L"*\\ut.ini", kConfigNotDeleted},
    {"FailedUpdate", "SetFileInformationByHandle", L"*\\ut.ini", kPlainWay, 1},
    {"FailedUpdate", "SetFileInformationByHandle", L"*\\ut.ini", kConfigNotDeleted},
    {"FailedUpdate", "CreateFileW", L"*{base}\\Updater\\", kEachLevel, 1},
    {"FailedUpdate", "CreateFileW", L"", kConfigElsewhere},

    // Whether a folder to which access is granted is a link. One that isn't there is none.
    {kInstalling, "CreateFileW", L"*{base}\\", kNotGranted, 2},
    {kInstalling, "CreateFileW", L"*{data}\\", kNotGranted},
    {kInstalling, "CreateFileW", L"*{base}\\Updater\\Config", kMissing, 1, kNotFound},
    {kInstalling, kAsksForPlace, L"*{base}\\Updater\\Config", kNotGranted, 1},
    {kInstalling, kAsksForPlace, L"*{base}\\Updater\\Temp", kNotGranted, 1},
    {kInstalling, kAsksForPlace, L"*{data}\\Corvane", kNotGranted},
    {"", "GetSystemDirectoryW", L"", kNotGranted},
    {"", "SetCurrentDirectoryW", L"system32", kNotGranted},
    {"", "GetCurrentDirectoryW SetCurrentDirectoryW", L"", kCurrentFolder},

    // Making sure that no link leads elsewhere from what is deleted or copied into. A folder
    // that is there is opened three times for the deletion, before it is held open for the copy;
    // for
    // one that isn't, the first time tells.
    {"Install", "CreateFileW", L"*{root}\\NimbaCast\\Updater\\", kEachLevel},
    {"Install", "CreateFileW", L"{root}\\NimbaCast\\Updater\\", kNimbaCastNotCopied},
    {kInstalling, "CreateFileW", L"*{base}\\CSUpdateManager", kRemoval, 1},
    {kInstalling, "CreateFileW", L"*{base}\\CSUpdateManager", kCopyFailed},
    {kInstalling, "CreateFileW", L"*{base}\\Data", kRemoval, 3},
    {kInstalling, "CreateFileW", L"*{base}\\Data", kCopyFailed},
    // Whether the source lies in the target, and keeping it from being replaced while it is listed.
    {kInstalling, "CreateFileW", L"*{base}\\Updater\\App\\Data", kRemoval, 1},
    {kInstalling, "CreateFileW", L"*{base}\\Updater\\App\\Data", kCopyFailed, 2},
    {kInstalling, "CreateFileW", L"*{base}\\Updater\\App\\CSUpdateManager", kCopyFailed, 1},
    {kInstalling, "GetFileInformationByHandleEx", L"*{base}\\Updater\\App\\Data", kSourceUnknown,
     1},
    {kInstalling, "GetFileInformationByHandleEx", L"*{base}\\Updater\\App\\CSUpdateManager",
     kSourceUnknown, 1},
    {"Install", "CreateFileW GetFileInformationByHandleEx", L"{base}\\Updater\\",
     kNimbaCastNotCopied},
    {"SelfUpdate", "CreateFileW", L"*\\App\\NHUpdateManager\\Config", kCopyFailed},
    {"SelfUpdate", "GetFileInformationByHandleEx", L"*\\App\\NHUpdateManager\\Config",
     kSourceUnknown},
    {"SelfUpdate", "CreateFileW", L"*{base}\\NHUpdateManager\\Config", kRemoval, 1},
    {"SelfUpdate", "CreateFileW", L"*{base}\\NHUpdateManager\\Config", kCopyFailed},
    {"", kAsksForPlace, L"", kRemoval},
    {"", "SetFileInformationByHandle", L"", kRemoval},

    // Files. The top level's staged files are copied twice: alone and then with their folder.
    {"", "DeleteFileW", L"*{base}\\Version.txt",
     Result(2, L"4|Fail to delete ({error}) : {base}\\Version.txt")},
    {"", "CopyFileW", L"*| {base}\\Version.txt", Result(2, L"4|Fail to copy ({error}) : "), 1},
    {"", "CopyFileW", L"", kCopyFailed},

    // Registration and folder access.
    {"", "RegCreateKeyExW RegSetValueExW", L"", kRegistration},
    {"", "ShellExecuteW", L"ICACLS.exe", kNotGranted},
};

}  // namespace

std::span<const FaultRule> AllRules() {
  return kRules;
}

}  // namespace nhupdate_test
