#pragma once

namespace Host {

/// Asks for large pages of memory for what the process allocates from now on. A tree of objects is touched bit by bit,
/// and with small pages the system's part in that is half of what a large page of a document costs.
///
/// Where that cannot be had, everything is as before. Before other threads are started.
void UseLargePages();

} // namespace Host
