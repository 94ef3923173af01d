#pragma once

// What a Windows executable or DLL says of itself: headers, imports, exports and resources.

#include <string>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

// Maps a file as it would lie in memory, without running any of it. A file that can't be mapped is
// a test failure.
class CPeImage {
 public:
  // Of the packaged folder, when it is given by its mere name.
  explicit CPeImage(const std::wstring& file);

  [[nodiscard]] const IMAGE_OPTIONAL_HEADER64& Header() const { return Headers().OptionalHeader; }
  [[nodiscard]] const IMAGE_FILE_HEADER& FileHeader() const { return Headers().FileHeader; }

  // Whether the time in the header is said to be a hash of the content.
  [[nodiscard]] bool SaysThatItsTimeIsAHash() const;

  // The names of the DLLs that it imports from, in lower case and sorted.
  [[nodiscard]] std::vector<std::string> ImportedDlls() const;

  // The names of the functions that it imports.
  [[nodiscard]] std::vector<std::string> ImportedFunctions() const;

  // The names that it exports, sorted.
  [[nodiscard]] std::vector<std::string> ExportedNames() const;

  // A value of the version resource's one string table.
  [[nodiscard]] std::wstring VersionText(const std::wstring& name) const;
  [[nodiscard]] VS_FIXEDFILEINFO FixedVersion() const;

  // The manifest as it stands; empty when there is none.
  [[nodiscard]] std::string Manifest() const { return Resource(RT_MANIFEST); }

 private:
  template <typename Type>
  [[nodiscard]] const Type* At(DWORD offset) const;
  template <typename Type>
  [[nodiscard]] static const Type* VersionValue(const std::string& version,
                                                const std::wstring& path);
  [[nodiscard]] const IMAGE_NT_HEADERS64& Headers() const;
  [[nodiscard]] const IMAGE_IMPORT_DESCRIPTOR* Imports() const;
  [[nodiscard]] std::string Resource(const wchar_t* type) const;

  nhupdate::UniqueLibrary library_;
};

}  // namespace nhupdate_test
