// The source line an operand-data check works on (DC, DS, address constants
// and macros): the lookup and the guard against a line index outside the
// file.
#pragma once

#include "records/console.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace opd {

inline SrcLineW& L(int line) { return b->vecSrcW[static_cast<size_t>(line)]; }
inline bool LineOk(int line) { return line >= 0 && static_cast<size_t>(line) < b->vecSrcW.size(); }

// The line a check is called for, or nullptr with a program error printed
// when the index lies outside the file.
inline SrcLineW* CheckedLine(int line) {
  if (LineOk(line)) return &L(line);
  con::out << "Prg. Error: (vecSrcW.size() < line)" << con::endl;
  con::out << PrgLocation(b->SrcFileName, line + 1, "") << con::endl;
  return nullptr;
}

}  // namespace opd
