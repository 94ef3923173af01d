#pragma once

// A product with the program as it is packaged, and stand-ins for everything else, in a scratch
// folder whose name has a blank, letters outside ASCII and a "%":
//
//   {scratch}\Corvane                                    {root}
//     Nimba Hub                                          {base}, version 1.0.0
//       NHHub.exe, Version.txt, Plugins\Cameras\cam.dll
//       NHUpdateManager\NHUpdateManager.exe, NSWLogDynamic64U.dll, LogConfig.ini, Config\...
//       Updater\Updater.exe, Script.ini, Config\ut.ini
//   {scratch}\Release                                   version 2.0.0, as it is staged
//
// ProgramData is the real one of the machine: what the product leaves there is deleted before and
// after.

#include <cstddef>
#include <string>

#include "tests/end_to_end/support/updater_script.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

class CInstalledHub {
 public:
  // The root folder's path has `root_length` characters; any number of them when that is 0.
  explicit CInstalledHub(std::size_t root_length = 0);
  ~CInstalledHub();
  CInstalledHub(const CInstalledHub&) = delete;
  CInstalledHub& operator=(const CInstalledHub&) = delete;

  [[nodiscard]] const std::wstring& Scratch() const { return scratch_.Path(); }
  [[nodiscard]] const std::wstring& Root() const { return root_; }
  [[nodiscard]] std::wstring Base() const { return Root() + L"\\Nimba Hub"; }
  [[nodiscard]] std::wstring Module() const { return Base() + L"\\NHUpdateManager"; }
  [[nodiscard]] std::wstring Manager() const { return Module() + L"\\NHUpdateManager.exe"; }
  [[nodiscard]] std::wstring Updater() const { return Base() + L"\\Updater"; }
  [[nodiscard]] std::wstring UpdaterConfig() const { return Updater() + L"\\Config\\ut.ini"; }
  [[nodiscard]] std::wstring App() const { return Updater() + L"\\App"; }
  [[nodiscard]] std::wstring StagedManager() const {
    return App() + L"\\NHUpdateManager\\NHUpdateManager.exe";
  }
  [[nodiscard]] std::wstring Release() const { return Scratch() + L"\\Release"; }
  [[nodiscard]] std::wstring DataFolder() const;
  [[nodiscard]] std::wstring LogFile() const;
  // Only a recording log library writes it.
  [[nodiscard]] std::wstring LogJournal() const { return Scratch() + L"\\log journal.txt"; }
  [[nodiscard]] std::wstring ChildJournal() const { return Scratch() + L"\\child journal.txt"; }

  // Puts version 1.0.0 where it belongs.
  void PutProduct() const;

  // Puts the packaged program, log library and log settings into the folder, with texts of the
  // tests' own. `version` is appended to the executable, where Windows doesn't look, so that one
  // copy can be told from another. Without a package the test fails and is not run.
  void PutManager(const std::wstring& folder, const std::string& version) const;

  // Puts another log library, or none for an empty name, beside the installed program.
  void UseLogLibrary(const std::wstring& name) const;

  // Copies the release to where the updater stages it.
  void StageRelease() const;

  // Tells the installed updater what to do.
  void Script(const std::wstring& task, const UpdaterTask& what) const;

  // Copies a stand-in to a path, with the folders above it.
  static void PutStandIn(const std::wstring& name, const std::wstring& path);

  // The text with the names of the folders replaced: {base}, {root}, {scratch} and {data}.
  [[nodiscard]] std::string WithPlaceholders(std::wstring text) const;

 private:
  void PutRelease() const;
  // Removes what runs leave outside of the scratch folder.
  void RemoveTraces() const;

  ScratchFolder scratch_;
  std::wstring root_;
};

}  // namespace nhupdate_test
