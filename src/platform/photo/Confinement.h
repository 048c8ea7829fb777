// What the photo worker gives up before it reads its first file.
#pragma once

#include <cstddef>

#include <sys/types.h>

namespace kintar::platform {

/// Takes from this process, for good, what a decoder never needs and a hostile file could want of
/// it: more rights, other programs, other processes, the network, changing anything in the file
/// system, a core dump. It ends when `parent`, which must be its parent process, ends; at once
/// where that has happened. `dataBytes` limits its memory; 0 does not.
void confineProcess(pid_t parent, std::size_t dataBytes);

/// Gives the process so many seconds of processor time from now on; it is ended after that.
void limitProcessorTime(unsigned seconds);

} // namespace kintar::platform
