#pragma once

// What nearly every test begins with: GoogleTest, what all tests use of the standard library, and
// the names of the program and of the matchers without their prefixes. It costs no time, since most
// of it is precompiled.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace nhupdate {}

namespace nhupdate_test {

using namespace nhupdate;

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::PrintToString;
using testing::SizeIs;
using testing::UnorderedElementsAre;

}  // namespace nhupdate_test
