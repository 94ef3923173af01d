// Makes one call behind the fence: fence_trespasser REACH CALL PLACE SCRATCH KEY PROGRAM PROCESS
//
// CALL is one of fence_trespasses.h, PLACE a folder with a file in it, SCRATCH an empty one, KEY a
// key below HKEY_CURRENT_USER, PROCESS the id of a process (0 is the trespasser itself). REACH is
// "scratch", "prefix", "opened" for an open fence, or "kept" for one that is to be opened on a
// machine that nobody wants to lose. The process ends with 0 when the call came through, whatever
// it returned.

#include <string>
#include <vector>

#include "tests/support/fence.h"
#include "tests/support/other_than_wine.h"
#include "tests/unit/support/fence_trespasses.h"

namespace nhupdate_test {
namespace {

void Make(const std::wstring& call, const Aim& aim) {
  for (const std::vector<Trespass>& calls : {kPlacedCalls, kOutsideCalls, kReadingCalls}) {
    for (const Trespass& trespass : calls) {
      if (call == trespass.call) {
        trespass.make(aim);
      }
    }
  }
}

}  // namespace
}  // namespace nhupdate_test

int main() {
  using namespace nhupdate_test;
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (count != 8) {
    return 2;
  }
  const std::wstring reach = arguments[1];
  const auto process = static_cast<DWORD>(std::stoul(arguments[7]));
  const Aim aim = {arguments[3], arguments[4], arguments[5], arguments[6],
                   process != 0 ? process : ::GetCurrentProcessId()};
  OpenFile(aim.scratch_file, GENERIC_WRITE, CREATE_ALWAYS);
  RaiseFence(reach == L"prefix" ? FenceReach::kPrefix : FenceReach::kScratch);
  if (reach == L"opened") {
    { const AllowOutside nested("it doesn't close what is open around it", Machine::kAnybodys); }
    const AllowOutside open("that is what is tried", Machine::kAnybodys);
    { const AllowOutside nested("it doesn't close what is open around it", Machine::kAnybodys); }
    Make(arguments[2], aim);
  } else if (reach == L"kept") {
    const OtherThanWine not_wine;
    const AllowOutside open("that is what is tried");
    Make(arguments[2], aim);
  } else {
    { const AllowOutside over("the fence is closed again behind it", Machine::kAnybodys); }
    Make(arguments[2], aim);
  }
  return 0;
}
