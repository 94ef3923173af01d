#pragma once

// CManagerCenter is the one object through which all work is done. It owns everything that lives
// longer than one call. Its operations are spread over the folders, one section for each file:
//
//   start-up and log          app/manager_center.cpp
//   string table              text/string_table.cpp
//   language selection        text/language_selection.cpp
//   error box                 text/error_box.cpp
//   launching child programs  update/child_launch.cpp
//   check and download        update/check_and_download.cpp
//   update                    update/update.cpp
//   self update               update/self_update.cpp
//   install sequence          update/install_sequence.cpp
//   running the updater       update/updater_run.cpp
//   updater refresh           update/updater_refresh.cpp
//   NimbaCast installation    update/nimba_cast_installation.cpp
//   updater configuration     update/updater_config.cpp
//   stopping processes        install/process_stop.cpp
//   folder copy               install/folder_copy.cpp, install/install_copy.cpp
//   folder removal            install/folder_removal.cpp
//   registration              install/registration.cpp
//   folder access             install/folder_access.cpp
//
// Operations that return int return 1 for success and 0 for failure, the workflows a result code
// (app/result_code.h). All of them log what they do.

#include <string>
#include <vector>

#include "app/product_folders.h"
#include "base/format.h"
#include "log/log_center.h"
#include "log/log_level.h"
#include "text/string_table.h"

namespace nhupdate {

struct ChildLaunch;
struct LaunchOutcome;
enum class CheckOutcome;
enum class UpdateOutcome;

class CManagerCenter {
 public:
  // Initialises COM for the calling thread and nothing else.
  CManagerCenter();
  virtual ~CManagerCenter();
  CManagerCenter(const CManagerCenter&) = delete;
  CManagerCenter& operator=(const CManagerCenter&) = delete;

  // --- start-up and log

  // Finds the folders, starts the log and loads the texts. Always 0: no part of it can keep a
  // workflow from running, which reports its own failures. To be called once.
  int Initialize();

  [[nodiscard]] bool IsElevated() const { return elevated_ != 0; }
  // The same for work that can't be done without: logs when the process isn't elevated.
  [[nodiscard]] bool RequireElevation();
  [[nodiscard]] CNSWLogCenter& LogCenter() { return log_center_; }

  // Writes one record, whatever its length.
  template <typename... Arguments>
  void Log(LogLevel level, FormatString<Arguments...> format, const Arguments&... arguments) {
    LogText(level, Format(format, arguments...));
  }

  // Writes a record that was put together already.
  void LogText(LogLevel level, const std::wstring& message);

  // --- string table

  // Adds the texts of a string file to the table. A file that can't be read or understood adds
  // nothing.
  void LoadStrings(const std::wstring& path);

  // The text of the key, or the key itself when there is none.
  [[nodiscard]] std::wstring GetString(const std::wstring& key) const;

  // --- language selection

  // The language code of Steam's setting, else the first preferred language of Windows, else
  // "Default". Needs the configuration folder.
  [[nodiscard]] std::wstring SelectLanguage();

  // --- error box

  // Shows a message box with the update's title and waits until it is closed.
  void ShowErrorBox(const std::wstring& text) const;

  // --- launching child programs

  // Starts a child program and, where the launch says so, waits until it ends, however long that
  // takes. Logs every step but does not judge the exit code.
  [[nodiscard]] LaunchOutcome Launch(const ChildLaunch& launch, const std::wstring& folder);

  // --- workflows

  [[nodiscard]] int CheckAndDownload();
  [[nodiscard]] int Update();
  [[nodiscard]] int SelfUpdate();
  // `final_update` is 0 for an installation and 1 for the last stage of an update, for which the
  // caller has tested the elevation.
  [[nodiscard]] int InstallSequence(int final_update);
  // Brings the updater itself up to date. Returns 1 when nothing is left to be copied, else 0.
  [[nodiscard]] int RefreshUpdater();
  // Installs the sibling product beside the base folder. Its result code stays within the program.
  [[nodiscard]] int InstallNimbaCast();
  // Deletes the updater's configuration, so that its next run starts afresh. The argument is 0 in
  // the installed copy of the program and 1 in the staged one. Returns whether there was one.
  [[nodiscard]] int DeleteUpdaterConfig(int staged);

  // --- stopping processes

  // The file name and path of a process's executable. Returns 0 and leaves both alone when the
  // process can't be opened.
  [[nodiscard]] static int GetProcessImageName(unsigned long process_id, std::wstring& name,
                                               std::wstring& path);

  // Ends every process of that file name, in any letter case, except the calling one. Returns 0
  // when one of them is still there afterwards.
  [[nodiscard]] int TerminateProcessByName(const std::wstring& file_name);

  // Ends all other copies of this program; tells the user when one can't be ended.
  [[nodiscard]] int StopUpdateManagers();

  // --- folder copy

  // Copies what is in `source` over `destination`, whose parent must exist, up to the first thing
  // that can't be copied or listed. A missing source is an empty one. Folders are copied only with
  // `recurse`; with `delete_existing` a sub-folder of the destination is deleted before one of that
  // name is copied, unless it may hold the source. The folder of the running program stays.
  [[nodiscard]] int CopyFolder(const std::wstring& destination, const std::wstring& source,
                               int recurse, int log_details, int delete_existing);

  // Puts the staged product over the installed one; tells the user when that fails.
  [[nodiscard]] int InstallCopy();

  // --- folder removal

  // Notes the sub-folders that hold no file at any depth for removal, the deepest first. Returns 1
  // when the folder itself holds none, or can't be listed. A link counts as a file.
  [[nodiscard]] int CollectEmptyFolders(const std::wstring& folder);

  // Deletes the folder with all its content, as far as possible. Links are removed, but what they
  // lead to is left alone. Returns non-zero when the folder is gone.
  [[nodiscard]] int DeleteFolderTree(const std::wstring& folder);

  // --- registration

  // Registers the product with Windows. Always 1: single values that can't be written are no
  // reason to call an installation failed.
  [[nodiscard]] int RegisterProduct();

  // --- folder access

  // Lets all users of the machine write to the folders that the product needs without elevation.
  // Starts the system's tool for each of them and doesn't wait for it.
  void GrantFolderAccess();

 private:
  void PrepareDataFolders();

  [[nodiscard]] CheckOutcome CheckWithUpdater(const ChildLaunch& launch,
                                              const std::wstring& updater_folder,
                                              FormatString<> found_message,
                                              FormatString<> nothing_found_message);
  [[nodiscard]] UpdateOutcome UpdateWithUpdater(const ChildLaunch& launch,
                                                const std::wstring& updater_folder);
  [[nodiscard]] bool StagedVersionDiffers();
  [[nodiscard]] bool CopySelfTo(const std::wstring& installed_folder);
  [[nodiscard]] int StartInstalledCopy(const std::wstring& installed_folder);
  [[nodiscard]] int PutIntoPlace();
  void RemoveEmptyFolders();
  [[nodiscard]] int DownloadNimbaCast(const std::wstring& updater_folder);
  [[nodiscard]] int RunNimbaCastManager(const std::wstring& manager_folder);

  [[nodiscard]] int CopyFolderWithRetries(const std::wstring& destination,
                                          const std::wstring& source, int delete_existing);
  [[nodiscard]] int CopyOneFile(const std::wstring& target, const std::wstring& source,
                                int log_details);
  [[nodiscard]] int CopySubFolder(const std::wstring& target, const std::wstring& source,
                                  int log_details, int delete_existing);
  [[nodiscard]] int DeleteInstalledFiles();
  [[nodiscard]] int CopyStagedFiles();
  void DeleteContentOf(const std::wstring& folder);
  void ShowCopyErrorBox(const std::wstring& path) const;
  void GrantUsersFullAccess(const std::wstring& folder);

  CNSWLogCenter log_center_;
  ProductFolders paths_;
  int elevated_ = 0;  // 1 when the process is elevated; 0 until start-up
  StringTable strings_;
  std::vector<std::wstring> folders_to_remove_;
  std::wstring last_failed_copy_path_;
};

}  // namespace nhupdate
