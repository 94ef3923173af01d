#include "update_log.h"

#include <charconv>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "owned_handle.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shlobj.h>

namespace nimba_hub {

namespace {

struct LogFile {
  OwnedHandle file;
  std::uint64_t identity = 0;
  std::int64_t size = 0;
};

// The log and the files that have been put aside, or that a process wrote in its place.
std::vector<LogFile> OpenLogFiles(const std::filesystem::path& folder) {
  std::vector<LogFile> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const std::wstring name = entry.path().filename().wstring();
    if (!name.starts_with(L"NHUpdateManager.") || !name.ends_with(L".log")) {
      continue;
    }
    // Nobody who writes, renames or deletes is to be kept from it.
    OwnedHandle file = OwnFile(::CreateFileW(
        entry.path().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION information = {};
    if (file != nullptr && ::GetFileInformationByHandle(file.get(), &information)) {
      files.push_back({std::move(file),
                       std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow,
                       static_cast<std::int64_t>(std::uint64_t{information.nFileSizeHigh} << 32 |
                                                 information.nFileSizeLow)});
    }
  }
  return files;
}

std::string ReadFrom(HANDLE file, std::int64_t offset) {
  LARGE_INTEGER distance = {};
  distance.QuadPart = offset;
  ::SetFilePointerEx(file, distance, nullptr, FILE_BEGIN);
  std::string bytes;
  std::string block(65536, '\0');
  DWORD read = 0;
  while (::ReadFile(file, block.data(), static_cast<DWORD>(block.size()), &read, nullptr) &&
         read > 0) {
    bytes.append(block, 0, read);
  }
  return bytes;
}

struct Record {
  unsigned process_id = 0;
  std::string_view text;
};

// "<time> [<process>:<thread>] <level> [NHUpdateManager] <text>"; no other text can begin a line
// so.
std::optional<Record> ReadRecord(std::string_view line) {
  constexpr std::string_view kTag = " [NHUpdateManager] ";
  const std::size_t id = line.find('[');
  const std::size_t tag = line.find(kTag);
  Record record;
  if (line.starts_with(' ') || tag == std::string_view::npos || id >= tag ||
      std::from_chars(line.data() + id + 1, line.data() + line.size(), record.process_id).ec !=
          std::errc()) {
    return std::nullopt;
  }
  record.text = line.substr(tag + kTag.size());
  while (record.text.ends_with('\r')) {
    record.text.remove_suffix(1);
  }
  return record;
}

std::optional<Mode> StageNamed(std::string_view text) {
  return text == "Function : Update"         ? std::optional(Mode::kUpdate)
         : text == "Function : Self Update"  ? std::optional(Mode::kSelfUpdate)
         : text == "Function : Final Update" ? std::optional(Mode::kFinalUpdate)
                                             : std::nullopt;
}

void Take(const Record& record, std::map<unsigned, StageEnd>& stages) {
  constexpr std::string_view kReturn = "Return ";
  if (const std::optional<Mode> stage = StageNamed(record.text)) {
    stages[record.process_id].stage = *stage;
  } else if (record.text.starts_with(kReturn) && stages.contains(record.process_id)) {
    int code = 0;
    std::from_chars(record.text.data() + kReturn.size(), record.text.data() + record.text.size(),
                    code);
    stages[record.process_id].code = static_cast<DWORD>(code);
  }
}

}  // namespace

std::filesystem::path LogFolder() {
  wchar_t* folder = nullptr;
  ::SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &folder);
  const std::filesystem::path data_folder = folder != nullptr ? folder : L"";
  ::CoTaskMemFree(folder);
  return data_folder / L"Corvane" / L"NimbaSoftware" / L"NimbaHub" / L"Log";
}

CUpdateLog::CUpdateLog(std::filesystem::path folder) : folder_(std::move(folder)) {
  for (const LogFile& file : OpenLogFiles(folder_)) {
    sizes_[file.identity] = file.size;
  }
}

std::optional<StageEnd> CUpdateLog::LastStage() const {
  std::map<unsigned, StageEnd> stages;
  for (const LogFile& file : OpenLogFiles(folder_)) {
    const auto known = sizes_.find(file.identity);
    std::istringstream lines(ReadFrom(file.file.get(), known != sizes_.end() ? known->second : 0));
    for (std::string line; std::getline(lines, line);) {
      if (const std::optional<Record> record = ReadRecord(line)) {
        Take(*record, stages);
      }
    }
  }
  // The stages follow each other in the order of the modes, whichever file they are in.
  std::optional<StageEnd> last;
  for (const auto& [process_id, stage] : stages) {
    if (!last || stage.stage >= last->stage) {
      last = stage;
    }
  }
  return last;
}

}  // namespace nimba_hub
