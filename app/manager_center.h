#pragma once

// CManagerCenter owns everything that lives longer than one call, and is what the workflows are
// operations of. It does little itself:
//
//   start-up, log             app/manager_center.cpp
//   workflows                 update/check_and_download.cpp, update.cpp, self_update.cpp,
//                             final_update.cpp, install_sequence.cpp
//   all other operations      one line each: what they do stands in text/, install/ and update/
//
// Operations that return int return 1 for success and 0 for failure, the workflows a result code
// (update/result_code.h).

#include <string>
#include <vector>

#include "base/product_folders.h"
#include "log/log.h"
#include "log/log_center.h"
#include "text/string_table.h"

namespace nhupdate {

// What an install sequence is part of. The last stage of an update has tested the elevation.
enum class InstallKind : int { kInstallation = 0, kLastUpdateStage = 1 };

class CManagerCenter {
 public:
  // Initialises COM for the calling thread and nothing else.
  CManagerCenter();
  virtual ~CManagerCenter();
  CManagerCenter(const CManagerCenter&) = delete;
  CManagerCenter& operator=(const CManagerCenter&) = delete;

  // Finds the folders, starts the log and loads the texts. Always 0: no part of it can keep a
  // workflow from running, which reports its own failures. To be called once.
  int Initialize();

  [[nodiscard]] bool IsElevated() const { return elevated_ != 0; }

  // --- the log

  // Writes one record, whatever its length.
  template <typename... Arguments>
  void Log(LogLevel level, FormatString<Arguments...> format, const Arguments&... arguments) {
    Records().Write(level, format, arguments...);
  }

  // What is handed to everything that writes records.
  [[nodiscard]] CLog Records() { return CLog(log_center_); }

  // Stops and unloads the log library; later records are dropped.
  void EndLog();

  // --- workflows (update/)

  [[nodiscard]] int CheckAndDownload();
  [[nodiscard]] int Update();
  [[nodiscard]] int SelfUpdate();
  [[nodiscard]] int FinalUpdate();
  [[nodiscard]] int InstallSequence(InstallKind kind);

  // Deletes the updater's configuration. The argument is 0 in the installed copy of the program and
  // 1 in the staged one. Returns whether there was one.
  [[nodiscard]] int DeleteUpdaterConfig(int staged);

  // --- texts (text/)

  void LoadStrings(const std::wstring& path);
  [[nodiscard]] std::wstring GetString(const std::wstring& key) const;
  [[nodiscard]] std::wstring SelectLanguage();

  // --- installation (install/)

  [[nodiscard]] static int GetProcessImageName(unsigned long process_id, std::wstring& name,
                                               std::wstring& path);
  [[nodiscard]] int TerminateProcessByName(const std::wstring& file_name);
  [[nodiscard]] int StopUpdateManagers();
  [[nodiscard]] int CopyFolder(const std::wstring& destination, const std::wstring& source,
                               int recurse, int log_details, int delete_existing);
  [[nodiscard]] int InstallCopy();
  [[nodiscard]] int CollectEmptyFolders(const std::wstring& folder);
  [[nodiscard]] int DeleteFolderTree(const std::wstring& folder);
  [[nodiscard]] int RegisterProduct();
  void GrantFolderAccess();

 private:
  void PrepareDataFolders();

  CNSWLogCenter log_center_;
  ProductFolders paths_;
  int elevated_ = 0;  // 1 when the process is elevated; 0 until start-up
  StringTable strings_;
  std::vector<std::wstring> folders_to_remove_;
  std::wstring last_failed_copy_path_;
};

}  // namespace nhupdate
