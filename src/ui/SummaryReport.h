#pragma once
// The summary of many recordings as a document: an A4 header with the company, the period and
// the counts of passed and failed curves, the table of every recording and curve, then a page
// per failed curve with its chart over the recording's time range and its violations.

#include "store/Summary.h"

#include <QString>

#include <vector>

// Writes the PDF; an existing file is replaced only when the new one is complete. The failed
// curves' recordings are read again, one at a time, for their charts. False when the file
// cannot be written.
bool WriteSummaryPdf(const std::vector<TSummaryRow>& rows, const TSummaryOptions& options, const QString& fileName);
