#include "named_turn.h"

namespace nimba_hub {

OwnedHandle TakeTurn(const std::wstring& name) {
  OwnedHandle turn(::CreateMutexW(nullptr, FALSE, name.c_str()));
  const DWORD error = ::GetLastError();
  return error == ERROR_ALREADY_EXISTS ? nullptr : std::move(turn);
}

bool IsTurnTaken(const std::wstring& name) {
  const OwnedHandle turn(::OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()));
  const DWORD error = ::GetLastError();
  // Another user's can't be opened.
  return turn != nullptr || error == ERROR_ACCESS_DENIED;
}

}  // namespace nimba_hub
