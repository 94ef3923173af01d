#include "tests/support/captured_console.h"

#include "tests/support/files.h"
#include "text/utf8.h"

namespace nhupdate_test {

namespace {

std::wstring CaptureFile(const ScratchFolder& scratch) {
  return scratch.Path() + L"\\console.txt";
}

}  // namespace

CapturedConsole::CapturedConsole()
    : file_(::CreateFileW(CaptureFile(scratch_).c_str(), GENERIC_WRITE,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                          CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)),
      previous_(::GetStdHandle(STD_OUTPUT_HANDLE)) {
  ::SetStdHandle(STD_OUTPUT_HANDLE, file_.Get());
}

CapturedConsole::~CapturedConsole() {
  ::SetStdHandle(STD_OUTPUT_HANDLE, previous_);
  file_.Reset();
}

std::string CapturedConsole::Bytes() const {
  return ReadFileBytes(CaptureFile(scratch_));
}

std::wstring CapturedConsole::Text() const {
  const std::string bytes = Bytes();
  return nhupdate::Utf8ToWide(bytes.data(), static_cast<int>(bytes.size()));
}

}  // namespace nhupdate_test
