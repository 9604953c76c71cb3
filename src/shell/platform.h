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

// The user's editor: $VISUAL, else $EDITOR, else "vi".
std::string UserEditor();

// Runs `editor` on `file` as  sh -c '<editor> "$1"' sh FILE, so that the
// editor may carry its own arguments while the file name stays an argument.
// An empty editor runs nothing.
int RunEditor(const std::string& editor, const std::string& file);

// The help document: <exe dir>/../docs/help.md, else docs/help.md or
// help.md in the current directory; "" when none is there.
std::string HelpDocumentPath();

}  // namespace shell
