#pragma once

// A turn that one process keeps from record to record for as long as nobody else writes. The mutex
// costs two calls into the system for each record, which is more than the writing itself; this turn
// costs a few steps in memory that all writers share.
//
// Nobody waits for its end, since it has one whenever another process wants to write: whoever has
// the mutex takes the standing turn back and waits only for the record that is being written. A
// process that ends in the middle of one is known by an object of its own, which Windows then
// removes. Only who can't use the memory can't take the turn back; within a second it is given back
// to him.
//
// Whoever may write the log may write that memory too, and could mislead the others about it. He
// gains what he has anyway by holding the mutex: records are then written without turns.

#include <cstdint>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

struct ViewTraits {
  using Value = void*;
  static Value None() { return nullptr; }
  static void Close(Value view) { ::UnmapViewOfFile(view); }
};
using UniqueView = UniqueHandle<ViewTraits>;

class CStandingTurn {
 public:
  // So many turns by the mutex without another process's in between show that one process alone is
  // writing.
  static constexpr int kTurnsInARow = 16;

  // False when the other writers can neither be seen nor be told that there is one who doesn't see
  // them. To wait for the mutex would then be of no use.
  [[nodiscard]] bool Open();

  // True when the standing turn is this process's. It then lasts until Leave at least.
  [[nodiscard]] bool Enter();
  void Leave();

  // What follows is for whoever has the mutex.

  // Takes the turn back from whoever has it; he may be in the middle of a record.
  void TakeBack();

  // True when nobody is in the middle of a record any more.
  [[nodiscard]] bool IsOver();

  // To be called at the end of each turn by the mutex. When there were enough of them in a row, the
  // standing turn becomes this process's.
  void CountTurn();

 private:
  // All zero in the beginning. Writers are known by numbers from 1 on.
  struct Shared {
    std::uint32_t last_number;  // that was given to a writer
    std::uint32_t holder;       // has the standing turn; 0 when nobody has. Written with the mutex
    std::uint32_t busy;         // is in the middle of a record of its standing turn, or 0
    std::uint32_t last_writer;  // by the mutex
  };

  [[nodiscard]] bool OpenShared();
  [[nodiscard]] bool IsSharedByAll();
  [[nodiscard]] Shared& All() const { return *static_cast<Shared*>(view_.Get()); }

  UniqueKernelHandle section_;  // keeps the name of the memory
  UniqueView view_;
  UniqueKernelHandle presence_;  // is there for as long as the process: by its number, or as one
                                 // that doesn't share the memory
  std::uint32_t number_ = 0;     // 0 when nobody could know that the process has ended
  int turns_in_a_row_ = 0;
  ULONGLONG next_look_ = 0;  // in the milliseconds of the system's uptime
};

}  // namespace nhupdate
