#pragma once
// The command line's exports: a recording loaded into a store as an open would load it, with
// its display settings (and a template), drawn by a chart that is in no window, and written as
// a picture or a report. No main window is made.


namespace zeb {

struct TCommandLine;

// The exit code: 0 done, 1 the recording or template cannot be loaded, 3 the picture or
// report cannot be written; the messages go to standard error.
int RunExport(const TCommandLine& cmd);

// The summary of every file of the command line as a PDF or CSV file: 0 when every recording
// was read completely, 1 when any was not (the summary is written all the same), 3 when the
// file cannot be written.
int RunSummary(const TCommandLine& cmd);

} // namespace zeb
