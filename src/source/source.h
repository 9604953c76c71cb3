// Source input: telling the encoding of a source file and reading it into
// the line records b->vecSrcW.
#pragma once

#include <string>

#include "records/records.h"
#include "records/text.h"

// Runs the byte order mark test and, with no mark and SimpleTitleIndex 0,
// the byte census; fills *moziCode and prints the reading banner.
void DetTextCodeW(TFileData& fd, const std::string& fileName);
// The mark tag ("EFBBBF", "FFFE", "FEFF") or "" (no mark, or unreadable).
std::string DetBOM_MzC(const std::string& fileName);
// The byte census: 0 when done, -1 when the file does not open.
int Det_sjisMzC(const std::string& fileName);

// Loaders: 0 when the file was read, -3 / -4 when it did not open.
int OpenFileUTF8toVecW(const std::string& fileName);
int OpenFileUTF16toVecW(const std::string& fileName);
// The narrow loader: each line's bytes into b->vecSrcA and, decoded in the
// system code page, into b->vecSrcW. A line longer than maxLineChars bytes
// is cut there and the first such line is told; a file of more than
// maxLines lines is not read (0: no limit). 0 when read, -3 when not.
int OpenFileNarrowToVec(const std::string& fileName, int maxLineChars, int maxLines);

// Decoders of one line of bytes (UTF-8; Shift-JIS code page 932).
wstr Utf8ToWStr(std::string_view line);
wstr AnsiToWStr(std::string_view line);
