// Stands in for Updater.exe and, under that name, for CSUpdateManager.exe. It writes down how it
// was started and then does what Script.ini beside it says for the task on its command line:
//
//   [check NIMBAHUB]          the task of "-CheckTask NIMBAHUB"; likewise for other tasks
//   [download NIMBAHUB]       a task with "-DownloadOnly"
//   [NIMBAHUB]                any other task
//   [-Install]                a command line without a task
//   DelayMs=500               first wait
//   Stage=C:\release          copy this folder into App beside the executable
//   NewUpdater=C:\updater     copy this folder into NewUpdater beside the executable
//   ExitCode=0                end with this code
//
// A task that the script doesn't know ends with 99, a folder that can't be copied with 98.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/stand_ins/support/copy_tree.h"
#include "tests/stand_ins/support/own_start.h"
#include "tests/stand_ins/support/wide_main.h"

namespace {

constexpr int kUnknownTask = 99;
constexpr int kNotCopied = 98;

std::wstring TaskOf(const std::vector<std::wstring>& arguments) {
  std::wstring kind;
  std::wstring task;
  for (const std::wstring& argument : arguments) {
    if (argument == L"-CheckTask") {
      kind = L"check ";
    } else if (argument == L"-DownloadOnly") {
      kind = L"download ";
    } else if (argument[0] != L'-' && task.empty()) {
      task = argument;
    }
  }
  if (task.empty() && !arguments.empty()) {
    task = arguments[0];
  }
  return kind + task;
}

class CScript {
 public:
  explicit CScript(const std::wstring& task)
      : task_(task), file_(nhupdate_stand_in::OwnFolder() + L"\\Script.ini") {}

  std::wstring Text(const wchar_t* key) const {
    std::wstring value(4096, L'\0');
    value.resize(::GetPrivateProfileStringW(task_.c_str(), key, L"", value.data(),
                                            static_cast<DWORD>(value.size()), file_.c_str()));
    return value;
  }

  int Number(const wchar_t* key, int fallback) const {
    const std::wstring text = Text(key);
    return text.empty() ? fallback : std::stoi(text);
  }

  // Copies the folder that the script names under the key, if any.
  bool Copy(const wchar_t* key, const wchar_t* destination) const {
    const std::wstring source = Text(key);
    return source.empty() ||
           nhupdate_stand_in::CopyTree(source, nhupdate_stand_in::OwnFolder() + destination);
  }

 private:
  std::wstring task_;
  std::wstring file_;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  nhupdate_stand_in::RecordOwnStart();
  const CScript script(TaskOf({arguments + 1, arguments + count}));
  ::Sleep(static_cast<DWORD>(script.Number(L"DelayMs", 0)));
  if (!script.Copy(L"Stage", L"\\App") || !script.Copy(L"NewUpdater", L"\\NewUpdater")) {
    return kNotCopied;
  }
  return script.Number(L"ExitCode", kUnknownTask);
}
