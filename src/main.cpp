// The entry: builds the main object and plays until the learner leaves. The
// command line is not read.
#include "records/console.h"
#include "shell/shell.h"

int main() {
  try {
    TGame game;
    Play(game);
  } catch (const con::InputEnded&) {
    // Standard input ended at a prompt: the program ends as if the console
    // window had been closed.
  }
  con::Flush();
  return 0;
}
