#include "tests/end_to_end/support/tree_description.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "base/paths.h"
#include "base/strings.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/support/files.h"
#include "tests/support/packaged_folder.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr std::size_t kFewBytes = 100;

// FNV-1a.
std::uint64_t HashOf(const std::string& bytes) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  }
  return hash;
}

std::string WithVisibleLineEnds(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    text += byte == '\r' ? "\\r" : byte == '\n' ? "\\n" : std::string(1, byte);
  }
  return text;
}

const std::string& PackagedProgram() {
  static const std::string bytes = ReadFileBytes(PackagedFolder() + L"\\NHUpdateManager.exe");
  return bytes;
}

bool IsNamed(const std::wstring& path, const wchar_t* name) {
  return nhupdate::EqualsIgnoringCase(nhupdate::FileName(path), name);
}

}  // namespace

std::string DescribeContent(const std::string& bytes) {
  if (bytes.size() <= kFewBytes) {
    return WithVisibleLineEnds(bytes);
  }
  std::array<char, 17> hash = {};
  std::snprintf(hash.data(), hash.size(), "%016llx",
                static_cast<unsigned long long>(HashOf(bytes)));
  return std::to_string(bytes.size()) + " bytes, hash " + hash.data();
}

std::string DescribeFile(const std::wstring& path) {
  const std::string bytes = ReadFileBytes(path);
  if (IsNamed(path, L"NHUpdateManager.exe") && bytes.starts_with(PackagedProgram())) {
    return "program " + DescribeContent(bytes.substr(PackagedProgram().size()));
  }
  return DescribeContent(bytes);
}

std::string DescribeTree(const std::wstring& folder) {
  std::string description;
  for (const std::wstring& entry : ListTree(folder)) {
    description += ToUtf8(entry);
    if (entry.back() != L'\\' && !IsNamed(entry, L"NHUpdateManager.log")) {
      description += " = " + DescribeFile(folder + L"\\" + entry);
    }
    description += "\n";
  }
  return description;
}

std::string DescribeManager(const std::string& prefix, const std::string& version) {
  const auto packaged = [](const wchar_t* file) { return DescribeFile(PackagedFolder() + file); };
  return prefix + "Config\\\n" +  //
         prefix + "Config\\NHUpdateManager.Default.json = " + DescribeContent(StringFile()) +
         "\n" +                                                               //
         prefix + "LogConfig.ini = " + packaged(L"\\LogConfig.ini") + "\n" +  //
         prefix + "NHUpdateManager.exe = program " + version + "\n" +         //
         prefix + "NSWLogDynamic64U.dll = " + packaged(L"\\NSWLogDynamic64U.dll") + "\n";
}

}  // namespace nhupdate_test
