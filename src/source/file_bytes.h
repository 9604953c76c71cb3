// Reading a source file's bytes. Only a regular file opens: a folder, a
// device or a pipe counts as a file that does not open, so that nothing
// blocks and nothing reads without end.
#pragma once

#include <cstddef>
#include <string>

// Reads at most `maxBytes` bytes of the file into `out`. False when the
// file does not open (or is not a regular file).
bool ReadFileBytes(const std::string& name, std::string& out, size_t maxBytes = static_cast<size_t>(-1));
