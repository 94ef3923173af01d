#include "tests/support/fence.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "base/windows.h"
#include "tests/support/fence_ground.h"
#include "tests/support/fenced_calls.h"
#include "tests/support/import_table.h"
#include "tests/support/throwaway_machine.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

std::atomic<int> g_open_count = 0;

// Taken before a test can put a fake into its place.
decltype(&::TerminateProcess) g_terminate_process = nullptr;

[[noreturn]] void EndTheRun() {
  std::fflush(stderr);
  // At once: neither handlers nor destructors get to do what was about to be done.
  g_terminate_process(::GetCurrentProcess(), kEndedAtTheFence);
  std::abort();
}

void FenceIn(const std::vector<FencedFunction>& functions, HMODULE module) {
  for (const FencedFunction& function : functions) {
    void** const slot = FindImportSlotIfAny(function.name, module);
    if (slot == nullptr || *slot == function.replacement) {
      continue;
    }
    *function.real = *slot;
    WriteImportSlot(slot, function.replacement);
  }
}

}  // namespace

void RaiseFence(FenceReach reach) {
  g_terminate_process = &::TerminateProcess;
  SurveyGround(reach);
  FenceInModule(::GetModuleHandleW(nullptr));
}

void FenceInModule(HMODULE module) {
  FenceIn(FencedFileCalls(), module);
  FenceIn(FencedRegistryCalls(), module);
  FenceIn(FencedProcessCalls(), module);
}

void RefuseUnlessAllowed(const char* function, const std::wstring& argument) {
  if (g_open_count > 0) {
    return;
  }
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  std::fprintf(stderr, "\nThe fence: %s reaches outside with \"%s\" (%s%s%s).\n", function,
               ToUtf8(argument.c_str()).c_str(), test != nullptr ? test->test_suite_name() : "",
               test != nullptr ? "." : "outside of the tests", test != nullptr ? test->name() : "");
  EndTheRun();
}

AllowOutside::AllowOutside(const char* reason, Machine machine) {
  if (machine == Machine::kThrowaway && !IsThrowawayMachine()) {
    std::fprintf(stderr, "\nThe fence stays closed (%s). %s\n", reason, kMachineIsKept);
    EndTheRun();
  }
  ++g_open_count;
}

AllowOutside::~AllowOutside() {
  --g_open_count;
}

}  // namespace nhupdate_test
