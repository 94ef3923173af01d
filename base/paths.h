#pragma once

// Paths are plain texts without a trailing backslash, taken apart at their last backslash and put
// together with literals that begin with one. A forward slash is an ordinary character here.

#include <string>

namespace nhupdate {

// The part before the last backslash; empty for a path without one.
[[nodiscard]] std::wstring ParentFolder(const std::wstring& path);

// The part behind the last backslash; the whole path if there is none.
[[nodiscard]] std::wstring FileName(const std::wstring& path);

// True when `path` is `folder` itself or lies below it, whatever the letter case. Texts are
// compared; links and short names aren't resolved.
[[nodiscard]] bool IsSameOrInside(const std::wstring& path, const std::wstring& folder);

}  // namespace nhupdate
