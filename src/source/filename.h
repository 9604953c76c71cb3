// File names typed at the console: reading them, trimming them, making them
// fit for use, and testing that they open.
#pragma once

#include <string>
#include <string_view>

// Reads a name from the console and tries it bare and with the extensions
// ".txt", ".asl", ".asm", ".cas", ".casl" appended one behind the other. The
// first that opens is recorded as the last source file and returned; else
// "The file is not found there. *" (or its Japanese form) and "".
std::string GetFilenameWithExtStr();

// Reads a folder name from the console: the typed text normalised and
// trimmed, or "" after "No Input Error!".
std::string GetFilenameStrA_TPO();

// Removes blanks, tabs, at-signs and the 2-byte space U+3000 at both ends.
std::string TrimFilenameStr(std::string_view name);

// Trims the name, turns backslashes into '/', and wraps a name that holds a
// blank, an at-sign or U+3000 in double quotes.
std::string NormFilenameStr(std::string_view name);

// True when the name, trimmed and normalised again, opens for reading as a
// file (a folder does not count).
bool FileExistsStr(std::string_view name);

// Backslashes turned into '/', nothing else changed.
std::string SlashFilenameStr(std::string_view name);
