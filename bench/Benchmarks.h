#pragma once

/// What is measured. Each benchmark is named "deed/what/who": those that differ in `who` alone do the same
/// work on the same bytes. `roost` is ours; the others are the peers beside it.
namespace roost::bench {

/// Decoding and encoding in memory.
void registerJsonBenchmarks();

/// Reading and writing the shared file on the disk of the temporary folder.
void registerStoreBenchmarks();

/// Writing numbers and dates for people.
void registerFormatBenchmarks();

/// Reading path data.
void registerPathBenchmarks();

/// Whether all peers draw the same path from the same data.
bool pathPeersAgree();

/// Whether all peers read equal records and write equal bytes: only then are their times comparable.
bool peersAgree();

/// The same for those that write texts.
bool formatPeersAgree();

} // namespace roost::bench
