#pragma once

// Something that one process at a time does. The name exists as long as somebody has the turn, and
// Windows takes it back from a process that ends in whatever way.

#include <string>

#include "owned_handle.h"

namespace nimba_hub {

// One update at a time on a machine; one product at a time in a user's session.
inline constexpr wchar_t kUpdateTurn[] = L"Global\\Corvane.NimbaHub.Update";
inline constexpr wchar_t kProductTurn[] = L"Local\\Corvane.NimbaHub.Product";

// None when somebody else has it.
[[nodiscard]] OwnedHandle TakeTurn(const std::wstring& name);

[[nodiscard]] bool IsTurnTaken(const std::wstring& name);

}  // namespace nimba_hub
