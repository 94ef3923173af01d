#include "log_library/object_access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "base/unique_handle.h"
#include "tests/log_library/access_text.h"
#include "tests/support/answers.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::CObjectAccess;
using nhupdate::OpenSharedMutex;
using nhupdate::UniqueKernelHandle;
using testing::StartsWith;

constexpr wchar_t kName[] = L"Global\\NHUpdateManager.test.shared";

// Administrators and the system may do everything, whoever is logged on only what he needs, and
// nobody else anything.
constexpr wchar_t kOfTheMutex[] = L"D:(A;;0x100001;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)";
constexpr wchar_t kOfTheMemory[] = L"D:(A;;DCLC;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)";

TEST(ObjectAccessTest, IsThatOfItsTextAndNotInherited) {
  const struct {
    const wchar_t* access;
    const wchar_t* text;
  } cases[] = {{nhupdate::kMutexAccess, kOfTheMutex}, {nhupdate::kMemoryAccess, kOfTheMemory}};
  for (const auto& test : cases) {
    CObjectAccess access(test.access);

    ASSERT_NE(access.Get(), nullptr);
    EXPECT_EQ(access.Get()->nLength, sizeof(SECURITY_ATTRIBUTES));
    EXPECT_EQ(access.Get()->bInheritHandle, FALSE);
    EXPECT_EQ(AccessText(access.Get()->lpSecurityDescriptor), test.text);
  }
}

TEST(ObjectAccessTest, IsFreedWithTheObject) {
  void* made = nullptr;
  void* freed = nullptr;
  const INTERPOSER(LocalFree) free_memory([&](void* memory) {
    freed = memory;
    return free_memory.Original()(memory);
  });
  {
    CObjectAccess access(nhupdate::kMutexAccess);
    made = access.Get()->lpSecurityDescriptor;
    EXPECT_EQ(freed, nullptr);
  }

  EXPECT_EQ(freed, made);
}

TEST(ObjectAccessTest, IsNoneWhenItCannotBeMade) {
  EXPECT_EQ(CObjectAccess(L"nonsense").Get(), nullptr);
  const INTERPOSER(ConvertStringSecurityDescriptorToSecurityDescriptorW) convert(
      [](auto, auto, void** descriptor, auto) {
        *descriptor = descriptor;  // what stands there after a failure is nobody's
        return FALSE;
      });
  const INTERPOSER(LocalFree) free_memory([](void* memory) -> HLOCAL {
    EXPECT_EQ(memory, nullptr);
    return nullptr;
  });

  EXPECT_EQ(CObjectAccess(nhupdate::kMutexAccess).Get(), nullptr);
}

TEST(SharedMutexTest, IsOpenToEveryoneWhoIsLoggedOnAndToBeWaitedForAndReleased) {
  INTERPOSER(CreateMutexExW) create(
      [&](SECURITY_ATTRIBUTES* attributes, const wchar_t* name, DWORD flags, DWORD access) {
        EXPECT_EQ(AccessText(attributes->lpSecurityDescriptor), kOfTheMutex);
        EXPECT_STREQ(name, kName);
        EXPECT_EQ(flags, 0u);  // it is nobody's yet
        EXPECT_EQ(access, DWORD{SYNCHRONIZE | MUTEX_MODIFY_STATE});
        return create.Original()(attributes, name, flags, access);
      });

  const UniqueKernelHandle mutex(OpenSharedMutex(kName));

  EXPECT_TRUE(mutex.IsValid());
  EXPECT_EQ(create.Calls(), 1);
}

TEST(SharedMutexTest, ReallyHasItsAccessList) {
  const UniqueKernelHandle mutex(OpenSharedMutex(kName));
  const UniqueKernelHandle readable(::OpenMutexW(READ_CONTROL, FALSE, kName));
  std::byte descriptor[512] = {};
  DWORD size = 0;
  ASSERT_TRUE(::GetKernelObjectSecurity(readable.Get(), DACL_SECURITY_INFORMATION, descriptor,
                                        sizeof(descriptor), &size));

  // "All" is written out for each kind of object on Windows.
  EXPECT_THAT(AccessText(descriptor), StartsWith(L"D:(A;;0x100001;;;AU)(A;;"));
}

TEST(SharedMutexTest, IsTheOneThatIsThere) {
  const UniqueKernelHandle owned(::CreateMutexW(nullptr, TRUE, kName));
  ASSERT_TRUE(owned.IsValid());

  const UniqueKernelHandle mutex(OpenSharedMutex(kName));

  EXPECT_TRUE(mutex.IsValid());
  EXPECT_TRUE(::ReleaseMutex(mutex.Get()));  // by the thread that owns it
}

TEST(SharedMutexTest, IsNotMadeWithoutItsAccessList) {
  const INTERPOSER(ConvertStringSecurityDescriptorToSecurityDescriptorW) convert(
      Answers(FALSE, ERROR_NOT_ENOUGH_MEMORY));
  const INTERPOSER(CreateMutexExW) create(Answers(HANDLE{}));

  EXPECT_EQ(OpenSharedMutex(kName), nullptr);

  EXPECT_EQ(convert.Calls(), 1);
  EXPECT_EQ(create.Calls(), 0);
}

TEST(SharedMutexTest, IsNoneWhereSomethingElseHasTheName) {
  const UniqueKernelHandle event(::CreateEventW(nullptr, TRUE, FALSE, kName));
  ASSERT_TRUE(event.IsValid());

  EXPECT_EQ(OpenSharedMutex(kName), nullptr);
}

}  // namespace
}  // namespace nhupdate_test
