#pragma once

namespace nhupdate_bench {

// The processor time that this process has taken so far, and under Wine the server of its prefix,
// in milliseconds.
[[nodiscard]] double ProcessorMs();

}  // namespace nhupdate_bench
