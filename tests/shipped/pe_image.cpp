#include "tests/shipped/pe_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "tests/support/packaged_folder.h"

#include <winver.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

// The lower bits of such a handle say how the file was mapped.
std::uintptr_t AddressOf(HMODULE module) {
  return reinterpret_cast<std::uintptr_t>(module) & ~std::uintptr_t{3};
}

std::wstring PathOf(const std::wstring& file) {
  return file.find(L'\\') == std::wstring::npos ? PackagedFolder() + L"\\" + file : file;
}

}  // namespace

CPeImage::CPeImage(const std::wstring& file)
    : library_(::LoadLibraryExW(PathOf(file).c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {
  EXPECT_TRUE(library_.IsValid()) << "Can't map " << testing::PrintToString(file)
                                  << "; what is shipped is made by tools/package.";
}

template <typename Type>
const Type* CPeImage::At(DWORD offset) const {
  return reinterpret_cast<const Type*>(AddressOf(library_.Get()) + offset);
}

const IMAGE_NT_HEADERS64& CPeImage::Headers() const {
  return *At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
}

bool CPeImage::SaysThatItsTimeIsAHash() const {
  constexpr DWORD kReproducible = 16;  // not every set of headers has a name for it
  const IMAGE_DATA_DIRECTORY& directory = Header().DataDirectory[IMAGE_DIRECTORY_ENTRY_DEBUG];
  const auto* entries = At<IMAGE_DEBUG_DIRECTORY>(directory.VirtualAddress);
  const DWORD count = directory.Size / sizeof(IMAGE_DEBUG_DIRECTORY);
  return std::any_of(entries, entries + count, [](const IMAGE_DEBUG_DIRECTORY& entry) {
    return entry.Type == kReproducible;
  });
}

std::vector<std::string> CPeImage::ImportedDlls() const {
  std::vector<std::string> names;
  for (const auto* entry = Imports(); entry->Name != 0; ++entry) {
    std::string name = At<char>(entry->Name);
    for (char& letter : name) {
      letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> CPeImage::ImportedFunctions() const {
  std::vector<std::string> names;
  for (const auto* entry = Imports(); entry->Name != 0; ++entry) {
    const auto* thunk = At<IMAGE_THUNK_DATA64>(entry->OriginalFirstThunk);
    for (; thunk->u1.AddressOfData != 0; ++thunk) {
      if (!IMAGE_SNAP_BY_ORDINAL64(thunk->u1.Ordinal)) {
        const auto* by_name = At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(thunk->u1.AddressOfData));
        names.emplace_back(reinterpret_cast<const char*>(by_name->Name));
      }
    }
  }
  return names;
}

const IMAGE_IMPORT_DESCRIPTOR* CPeImage::Imports() const {
  return At<IMAGE_IMPORT_DESCRIPTOR>(
      Header().DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
}

std::vector<std::string> CPeImage::ExportedNames() const {
  const IMAGE_DATA_DIRECTORY& directory = Header().DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  if (directory.Size == 0) {
    return {};
  }
  const auto* exports = At<IMAGE_EXPORT_DIRECTORY>(directory.VirtualAddress);
  const auto* offsets = At<DWORD>(exports->AddressOfNames);
  std::vector<std::string> names;
  for (DWORD index = 0; index < exports->NumberOfNames; ++index) {
    names.emplace_back(At<char>(offsets[index]));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string CPeImage::Resource(const wchar_t* type) const {
  const HRSRC found = ::FindResourceW(library_.Get(), MAKEINTRESOURCEW(1), type);
  if (found == nullptr) {
    return {};
  }
  const auto* data =
      static_cast<const char*>(::LockResource(::LoadResource(library_.Get(), found)));
  return std::string(data, ::SizeofResource(library_.Get(), found));
}

template <typename Type>
const Type* CPeImage::VersionValue(const std::string& version, const std::wstring& path) {
  void* value = nullptr;
  UINT size = 0;
  if (version.empty() || !::VerQueryValueW(version.data(), path.c_str(), &value, &size)) {
    ADD_FAILURE() << "No " << testing::PrintToString(path);
    return nullptr;
  }
  return static_cast<const Type*>(value);
}

std::wstring CPeImage::VersionText(const std::wstring& name) const {
  const std::string version = Resource(RT_VERSION);
  const auto* text = VersionValue<wchar_t>(version, L"\\StringFileInfo\\040904B0\\" + name);
  return text != nullptr ? text : L"";
}

VS_FIXEDFILEINFO CPeImage::FixedVersion() const {
  const std::string version = Resource(RT_VERSION);
  const auto* fixed = VersionValue<VS_FIXEDFILEINFO>(version, L"\\");
  return fixed != nullptr ? *fixed : VS_FIXEDFILEINFO();
}

}  // namespace nhupdate_test
