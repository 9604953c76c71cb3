#include "reports/report.h"

void DspReportHintNW(int, ReportKind, const std::string&) {}
std::string labelsAtAdr(int) { return {}; }
std::string NumericRowText(int32_t) { return {}; }
std::string ReportTimeStamp(int, std::time_t) { return {}; }
std::time_t ReportNow() { return 0; }
void ResetReportHintCounts() {}
int DspRegMry70NW(Tcomet2&, const std::string&) { return 0; }
