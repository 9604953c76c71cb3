// The services of the platform that the menu uses: running a command with an
// argument vector and waiting for it, the user's editor, the help document.
#pragma once

#include <string>
#include <vector>

namespace shell {

// Runs argv[0] (looked up in PATH) with the arguments and waits for it. The
// console output is flushed first. Returns the exit status, or -1 when the
// command could not be started or ended by a signal.
int RunCommand(const std::vector<std::string>& argv);

// The user's editor: $VISUAL, else $EDITOR, else the first of
// sensible-editor, editor, nano and vi found on PATH.
std::string UserEditor();

// Runs `editor` on `file` as  sh -c '<editor> "$1"' sh FILE, so that the
// editor may carry its own arguments while the file name stays an argument.
// An empty editor runs nothing.
int RunEditor(const std::string& editor, const std::string& file);

// The folders searched for the guides, in order: the installed documents
// beside the program (<exe dir>/../share/doc/drillasm), the source tree of a
// build (<exe dir>/../docs), the installed folder named at build time, then
// docs/ and the current directory.
std::vector<std::string> HelpDocumentFolders();

// The guide in the learner's language (help.ja.md or help.md) from the first
// folder that has it, else the other language's; "" when none is there.
std::string HelpDocumentPath(bool japanese);

}  // namespace shell
