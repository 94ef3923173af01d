#include "tests/end_to_end/support/tree.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "base/paths.h"
#include "base/strings.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/packaged_folder.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr std::size_t kFewBytes = 100;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr char kHash[] = " bytes, hash ";

// FNV-1a.
std::uint64_t HashOf(const std::string& bytes) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  }
  return hash;
}

std::string DescribeContent(const std::string& bytes) {
  if (bytes.size() > kFewBytes) {
    std::array<char, 17> hash = {};
    std::snprintf(hash.data(), hash.size(), "%016llx",
                  static_cast<unsigned long long>(HashOf(bytes)));
    return std::to_string(bytes.size()) + kHash + hash.data();
  }
  std::string text;
  for (const char byte : bytes) {
    text += byte == '\r' ? "\\r" : byte == '\n' ? "\\n" : std::string(1, byte);
  }
  return text;
}

std::string DescribeFile(const std::wstring& path) {
  static const std::string program = ReadFileBytes(PackagedFolder() + L"\\NHUpdateManager.exe");
  const std::wstring name = nhupdate::FileName(path);
  if (nhupdate::EqualsIgnoringCase(name, L"NHUpdateManager.log")) {
    return "(log)";
  }
  const nhupdate::UniqueFile file(
      ::CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  const DWORD error = ::GetLastError();
  if (!file.IsValid() && error == ERROR_SHARING_VIOLATION) {
    return "(held)";
  }
  const std::string bytes = ReadFileBytes(path);
  return bytes.starts_with(program) ? "program " + bytes.substr(program.size())
                                    : DescribeContent(bytes);
}

std::string Shown(const std::string& content, const Tree& before) {
  if (content.find(kHash) != std::string::npos) {
    for (const auto& [path, earlier_content] : before) {
      if (earlier_content == content) {
        return ", as " + ToUtf8(path);
      }
    }
  }
  return content.empty() ? "" : " = " + content;
}

}  // namespace

Tree ReadTree(const std::wstring& folder) {
  Tree tree;
  for (const std::wstring& entry : ListTree(folder)) {
    const std::wstring path = folder + L"\\" + entry;
    tree[path] = entry.back() == L'\\' ? "" : DescribeFile(path);
  }
  return tree;
}

std::string DescribeChanges(const Tree& before, const Tree& after) {
  Tree all = before;
  all.insert(after.begin(), after.end());
  std::string changes;
  for (const auto& [path, content] : all) {
    const auto was = before.find(path);
    const auto is = after.find(path);
    if (is == after.end()) {
      changes += "gone: " + ToUtf8(path) + "\n";
    } else if (was == before.end()) {
      changes += "new: " + ToUtf8(path) + Shown(is->second, before) + "\n";
    } else if (was->second != is->second) {
      changes += "changed: " + ToUtf8(path) + Shown(is->second, before) + "\n";
    }
  }
  return changes;
}

}  // namespace nhupdate_test
